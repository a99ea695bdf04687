#include "host/files/Files.h"

#include "host/HostError.h"
#include "host/console/Interrupt.h"
#include "host/console/Text.h"

#include <algorithm>

namespace host {

namespace {

constexpr DWORD kMaxTransfer = 1u << 26;

[[noreturn]] void Fail(ExitCode code, const std::string& text) {
    throw HostError(code, text);
}

DWORD Portion(std::size_t bytes) {
    return static_cast<DWORD>(std::min<std::size_t>(bytes, kMaxTransfer));
}

class CFileReader final : public IByteReader {
public:
    CFileReader(CFileHandle owned, HANDLE handle, std::string name)
        : m_owned(std::move(owned))
        , m_handle(handle)
        , m_name(std::move(name)) {}

    std::size_t Read(void* buffer, std::size_t bytes) override {
        const CTransfer transfer;
        DWORD got = 0;
        if (ReadFile(m_handle, buffer, Portion(bytes), &got, nullptr)) {
            m_position += got;
            return got;
        }
        const DWORD error = GetLastError();
        ThrowIfInterrupted();
        if (error == ERROR_BROKEN_PIPE || error == ERROR_HANDLE_EOF) {
            return 0;
        }
        Fail(ExitCode::Input,
             m_name + ": cannot be read at byte " + std::to_string(m_position) + ": " + ErrorText(error));
    }

    std::optional<std::uint64_t> Size() const override {
        LARGE_INTEGER size;
        if (GetFileType(m_handle) != FILE_TYPE_DISK || !GetFileSizeEx(m_handle, &size)) {
            return std::nullopt;
        }
        return static_cast<std::uint64_t>(size.QuadPart);
    }

    const std::string& Name() const override { return m_name; }

private:
    CFileHandle m_owned; // empty for standard input
    HANDLE m_handle;
    std::string m_name;
    std::uint64_t m_position = 0;
};

// Writes to a handle; what is common to pipes and files.
class CHandleOutput : public IOutput {
public:
    CHandleOutput(CFileHandle owned, HANDLE handle, std::string name)
        : m_owned(std::move(owned))
        , m_handle(handle)
        , m_name(std::move(name)) {}

    void Write(const void* data, std::size_t bytes) override {
        const auto* next = static_cast<const char*>(data);
        while (bytes != 0) {
            const CTransfer transfer;
            DWORD done = 0;
            const BOOL written = WriteFile(m_handle, next, Portion(bytes), &done, nullptr);
            m_written += done;
            if (!written) {
                FailWrite(GetLastError());
            }
            if (done == 0) {
                FailWrite(ERROR_DISK_FULL);
            }
            next += done;
            bytes -= done;
        }
    }

    bool CanSeek() const override { return false; }
    void Seek(std::uint64_t) override { Fail(ExitCode::Output, m_name + ": a pipe cannot go back."); }
    const std::string& Name() const override { return m_name; }
    void Commit() override {}

protected:
    HANDLE Get() const { return m_handle; }
    void Close() { m_owned.Reset(); }

private:
    [[noreturn]] void FailWrite(DWORD error) const {
        ThrowIfInterrupted();
        const std::string at = " after " + std::to_string(m_written) + " bytes";
        switch (error) {
        case ERROR_BROKEN_PIPE:
        case ERROR_NO_DATA:
        case ERROR_PIPE_NOT_CONNECTED:
            Fail(ExitCode::Output, m_name + ": the program that reads it has ended" + at + ".");
        case ERROR_DISK_FULL:
        case ERROR_HANDLE_DISK_FULL:
            // An unfinished file goes, a pipe or device keeps what it got.
            Fail(ExitCode::Output, m_name + ": the disk is full" + at + (CanSeek() ? "; nothing is left of it." : "."));
        default:
            Fail(ExitCode::Output, m_name + ": cannot be written" + at + ": " + ErrorText(error));
        }
    }

    CFileHandle m_owned; // empty for standard output
    HANDLE m_handle;
    std::string m_name;
    std::uint64_t m_written = 0;
};

// A file marked so disappears with its last handle, however the process ends. Where the file system cannot do that,
// the destructor below is what removes an unfinished file.
bool MarkForDeletion(HANDLE file, bool mark) {
    FILE_DISPOSITION_INFO disposition{};
    disposition.DeleteFile = mark;
    return SetFileInformationByHandle(file, FileDispositionInfo, &disposition, sizeof disposition) != 0;
}

class CFileOutput final : public CHandleOutput {
public:
    CFileOutput(CFileHandle handle, HANDLE raw, const std::string& name, std::wstring path, std::wstring temporary,
                bool replace)
        : CHandleOutput(std::move(handle), raw, name)
        , m_path(std::move(path))
        , m_temporary(std::move(temporary))
        , m_replace(replace)
        , m_marked(MarkForDeletion(raw, true)) {}
    CFileOutput(const CFileOutput&) = delete;
    CFileOutput& operator=(const CFileOutput&) = delete;
    ~CFileOutput() override {
        if (!m_whole) {
            Close();
            DeleteFileW(m_temporary.c_str());
        }
    }

    bool CanSeek() const override { return true; }

    void Seek(std::uint64_t offset) override {
        LARGE_INTEGER to;
        to.QuadPart = static_cast<LONGLONG>(offset);
        if (!SetFilePointerEx(Get(), to, nullptr, FILE_BEGIN)) {
            Fail(ExitCode::Output, Name() + ": cannot be written: " + ErrorText(GetLastError()));
        }
    }

    void Commit() override {
        if (m_marked && !MarkForDeletion(Get(), false)) {
            Fail(ExitCode::Output, Name() + ": the finished file cannot be kept: " + ErrorText(GetLastError()));
        }
        Close();
        m_whole = true; // whatever happens to its name, the file stays
        if (!MoveFileExW(m_temporary.c_str(), m_path.c_str(), m_replace ? MOVEFILE_REPLACE_EXISTING : 0)) {
            const std::string why = ErrorText(GetLastError());
            Fail(ExitCode::Output, Name() + ": the finished file cannot get its name: " + why +
                                       ". It lies complete in " + ToUtf8(m_temporary) + ".");
        }
    }

private:
    std::wstring m_path;
    std::wstring m_temporary;
    bool m_replace;
    bool m_marked;
    bool m_whole = false;
};

// A device such as NUL is written to as it is: it must not be replaced by a file.
std::unique_ptr<IOutput> OpenDevice(const std::wstring& path, const std::string& name) {
    CFileHandle device(CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                   OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!device || GetFileType(device.Get()) == FILE_TYPE_DISK) {
        return nullptr;
    }
    const HANDLE handle = device.Get();
    return std::make_unique<CHandleOutput>(std::move(device), handle, name);
}

// What would only fail in the end, when the work is done, fails now as far as it can be known.
void CheckTarget(const std::wstring& path, const std::string& name, bool replace) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        return;
    }
    if (attributes & FILE_ATTRIBUTE_DIRECTORY) {
        Fail(ExitCode::Output, name + ": is a folder. Name a file.");
    }
    if (!replace) {
        Fail(ExitCode::Output, name + ": exists already. Name another file, or add --force to replace it.");
    }
    if (attributes & FILE_ATTRIBUTE_READONLY) {
        Fail(ExitCode::Output, name + ": is write-protected, so it cannot be replaced.");
    }
    const CFileHandle alone(
        CreateFileW(path.c_str(), DELETE, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!alone) {
        Fail(ExitCode::Output, name + ": cannot be replaced: " + ErrorText(GetLastError()));
    }
}

// Never one that is there: it may be the finished work of a run whose process had the same number.
CFileHandle CreateTemporary(const std::wstring& path, std::wstring& temporary) {
    const std::wstring stem = path + L"." + std::to_wstring(GetCurrentProcessId());
    temporary = stem + L".part";
    for (unsigned i = 1;; ++i) {
        CFileHandle file(CreateFileW(temporary.c_str(), GENERIC_WRITE | DELETE, 0, nullptr, CREATE_NEW,
                                     FILE_ATTRIBUTE_NORMAL, nullptr));
        if (file || GetLastError() != ERROR_FILE_EXISTS) {
            return file;
        }
        temporary = stem + L"-" + std::to_wstring(i) + L".part";
    }
}

} // namespace

std::wstring FullPath(const std::wstring& path) {
    wchar_t full[32768];
    const DWORD length = GetFullPathNameW(path.c_str(), ARRAYSIZE(full), full, nullptr);
    return length != 0 && length < ARRAYSIZE(full) ? std::wstring(full, length) : path;
}

bool SamePath(const std::wstring& a, const std::wstring& b) {
    return CompareStringOrdinal(a.c_str(), -1, b.c_str(), -1, TRUE) == CSTR_EQUAL;
}

std::unique_ptr<IByteReader> OpenReader(const std::string& path) {
    if (path == "-") {
        return std::make_unique<CFileReader>(CFileHandle(), GetStdHandle(STD_INPUT_HANDLE), "standard input");
    }
    CFileHandle file(CreateFileW(ToWide(path).c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                 FILE_ATTRIBUTE_NORMAL | FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    if (!file) {
        Fail(ExitCode::Input, path + ": cannot be opened: " + ErrorText(GetLastError()));
    }
    const HANDLE handle = file.Get();
    return std::make_unique<CFileReader>(std::move(file), handle, path);
}

std::unique_ptr<IOutput> OpenOutput(const std::string& path, bool replace) {
    if (path == "-") {
        return std::make_unique<CHandleOutput>(CFileHandle(), GetStdHandle(STD_OUTPUT_HANDLE), "standard output");
    }
    const std::wstring wide = ToWide(path);
    if (auto device = OpenDevice(wide, path)) {
        return device;
    }
    CheckTarget(wide, path, replace);
    std::wstring temporary;
    CFileHandle file = CreateTemporary(wide, temporary);
    if (!file) {
        Fail(ExitCode::Output, path + ": cannot be created: " + ErrorText(GetLastError()));
    }
    const HANDLE handle = file.Get();
    return std::make_unique<CFileOutput>(std::move(file), handle, path, wide, std::move(temporary), replace);
}

} // namespace host
