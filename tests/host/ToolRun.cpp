#include "tests/host/ToolRun.h"

#include <algorithm>
#include <iterator>
#include <sstream>
#include <thread>

#include <windows.h>

namespace host {

namespace {

// One pipe whose one end the program inherits. The platform cancels what waits in a handle for overlapped transfers
// only when it is asked by the transfer's own structure; a transfer without one waits all the same.
struct Pipe {
    HANDLE read = nullptr;
    HANDLE write = nullptr;

    Pipe(bool programReads, bool stubborn) {
        static int number = 0;
        const std::wstring name =
            L"\\\\.\\pipe\\nmfv-test-" + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(++number);
        SECURITY_ATTRIBUTES inherit{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
        const DWORD flags = stubborn ? FILE_FLAG_OVERLAPPED : 0;
        read = CreateNamedPipeW(name.c_str(), PIPE_ACCESS_INBOUND | (programReads ? flags : 0), PIPE_TYPE_BYTE, 1, 4096,
                                4096, 0, programReads ? &inherit : nullptr);
        write = CreateFileW(name.c_str(), GENERIC_WRITE, 0, programReads ? nullptr : &inherit, OPEN_EXISTING,
                            programReads ? 0 : flags, nullptr);
    }
};

void Feed(HANDLE pipe, const Bytes& bytes, const std::function<void()>& beforeEnd) {
    DWORD done = 0;
    for (std::size_t at = 0; at < bytes.size(); at += done) {
        const auto step = static_cast<DWORD>(std::min<std::size_t>(bytes.size() - at, 65536));
        if (!WriteFile(pipe, bytes.data() + at, step, &done, nullptr)) {
            break;
        }
    }
    beforeEnd();
    CloseHandle(pipe);
}

Bytes Drain(HANDLE pipe, std::size_t limit) {
    Bytes all;
    std::uint8_t buffer[65536];
    DWORD got = 0;
    while (all.size() < limit && ReadFile(pipe, buffer, sizeof buffer, &got, nullptr) && got != 0) {
        all.insert(all.end(), buffer, buffer + got);
    }
    CloseHandle(pipe);
    return all;
}

std::filesystem::path FromUtf8(const std::string& text) {
    return std::u8string(text.begin(), text.end());
}

std::wstring CommandLine(const std::vector<std::string>& arguments) {
    std::wstring line = L"\"" + (ProgramFolder() / L"nmfvdeint.exe").wstring() + L"\"";
    for (const std::string& argument : arguments) {
        line += L" \"" + FromUtf8(argument).wstring() + L"\"";
    }
    return line;
}

} // namespace

ToolResult RunTool(const std::filesystem::path& folder, const std::vector<std::string>& arguments,
                   const ToolInput& input) {
    const Pipe in(true, input.stubborn);
    const Pipe out(false, input.stubborn);
    const Pipe errors(false, false);
    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdInput = in.read;
    start.hStdOutput = out.write;
    start.hStdError = errors.write;
    std::wstring line = CommandLine(arguments);
    PROCESS_INFORMATION process{};
    ToolResult result;
    const BOOL started =
        CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, folder.c_str(), &start, &process);
    EXPECT_TRUE(started) << "error " << GetLastError();
    CloseHandle(in.read);
    CloseHandle(out.write);
    CloseHandle(errors.write);
    std::thread feeder([&] {
        Feed(in.write, input.bytes, [&] {
            if (input.meanwhile) {
                input.meanwhile(process.hProcess);
            }
        });
    });
    std::thread listener([&] {
        const Bytes text = Drain(errors.read, SIZE_MAX);
        result.errors.assign(text.begin(), text.end());
    });
    if (input.readLate) {
        WaitForSingleObject(process.hProcess, INFINITE);
    }
    result.output = Drain(out.read, input.readAtMost);
    WaitForSingleObject(process.hProcess, INFINITE);
    GetExitCodeProcess(process.hProcess, &result.code);
    feeder.join();
    listener.join();
    CloseHandle(process.hProcess);
    CloseHandle(process.hThread);
    return result;
}

ToolResult ToolTest::Run(const std::string& commandLine, const ToolInput& input) const {
    std::istringstream words(commandLine);
    return RunTool(m_folder, {std::istream_iterator<std::string>(words), {}}, input);
}

void ToolTest::Write(const std::string& name, const Bytes& bytes) const {
    WriteFileBytes(m_folder / FromUtf8(name), bytes);
}

Bytes ToolTest::Read(const std::string& name) const {
    return ReadFileBytes<Bytes>(m_folder / FromUtf8(name));
}

std::vector<std::string> ToolTest::Files() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(m_folder)) {
        const std::u8string name = entry.path().filename().u8string();
        names.emplace_back(name.begin(), name.end());
    }
    std::sort(names.begin(), names.end());
    return names;
}

long NumberBefore(const std::string& text, const std::string& words) {
    const std::size_t end = text.find(words);
    if (end == text.npos) {
        return -1;
    }
    std::size_t begin = end;
    while (begin != 0 && text[begin - 1] >= '0' && text[begin - 1] <= '9') {
        --begin;
    }
    return begin == end ? -1 : std::stol(text.substr(begin, end - begin));
}

Bytes MakeY4m(int width, int height, int frames, const std::vector<int>& combed, const std::string& rate) {
    Bytes clip = FromText("YUV4MPEG2 W" + std::to_string(width) + " H" + std::to_string(height) + " F" + rate +
                          " It A1:1 C422\n");
    for (int frame = 0; frame < frames; ++frame) {
        const Bytes line = FromText("FRAME\n");
        clip.insert(clip.end(), line.begin(), line.end());
        const bool combs = std::find(combed.begin(), combed.end(), frame) != combed.end();
        for (int y = 0; y < height; ++y) {
            // Without combs every second step is too small for the detector, yet blending changes the rows.
            const int luma = combs ? (y % 2 ? 200 : 40) : 60 + (y / 2 % 2) * 100 + frame;
            clip.insert(clip.end(), static_cast<std::size_t>(width), static_cast<std::uint8_t>(luma));
        }
        clip.insert(clip.end(), static_cast<std::size_t>(width) * static_cast<std::size_t>(height), 128);
    }
    return clip;
}

} // namespace host
