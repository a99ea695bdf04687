#include "host/verbs/Verbs.h"

#include "base/Handles.h"
#include "host/HostError.h"
#include "host/registration/BoxWatch.h"
#include "host/console/Console.h"
#include "host/transform/DllFile.h"
#include "host/files/Files.h"
#include "host/transform/Platform.h"
#include "host/transform/RegisteredTransform.h"
#include "host/console/Text.h"

#include <NMFVDeinterlace.h>
#include <oleauto.h>
#include <wrl/client.h>

using Microsoft::WRL::ComPtr;

namespace host {

namespace {

constexpr char kElevate[] = " Run it again from a command prompt that was started as administrator.";

using EntryFn = HRESULT STDAPICALLTYPE();

[[noreturn]] void Fail(const std::string& text) {
    throw HostError(ExitCode::Registration, text);
}

// The DLL that the command line means, loaded and found to be the transform's.
class CServer {
public:
    explicit CServer(const Options& options)
        : m_dll(PathFor(options)) {
        ComPtr<IClassFactory> factory;
        if (FAILED(m_dll.GetFactory(__uuidof(NMFVDeinterlace), factory.GetAddressOf()))) {
            throw HostError(ExitCode::Transform, Name() + ": does not hold the transform.");
        }
    }

    std::wstring Path() const { return m_dll.Path(); }
    std::string Name() const { return ToUtf8(Path()); }
    std::string NameAndVersion() const { return Name() + ", " + VersionText(VersionOf(Path())); }

    EntryFn* Entry(const char* name) const {
        auto* const entry = m_dll.Find<EntryFn>(name);
        if (!entry) {
            throw HostError(ExitCode::Transform, Name() + ": does not export " + name + ".");
        }
        return entry;
    }

private:
    static std::wstring PathFor(const Options& options) {
        const std::wstring path = options.dll.empty() ? DllBesideProgram() : FullPath(ToWide(options.dll));
        if (path.empty()) {
            throw HostError(ExitCode::Transform, "NMFVDeitrx.dll is not beside this program. Put it there, or name it "
                                                 "with --dll FILE.");
        }
        return path;
    }

    CDllFile m_dll;
};

// The registration is written in the system's code page, and in a buffer of MAX_PATH.
void CheckPath(const CServer& server) {
    const std::wstring path = server.Path();
    BOOL lost = FALSE;
    const int bytes = WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, path.c_str(), -1, nullptr, 0, nullptr, &lost);
    if (lost || bytes == 0 || bytes > MAX_PATH) {
        Fail(server.Name() + ": cannot be registered from this folder: its path is longer than 259 characters or holds "
                             "some that the system's code page lacks. Move the file.");
    }
}

// What fails here would make the DLL show a box in its own registration.
void CheckTypeLibrary(const CServer& server) {
    ComPtr<ITypeLib> library;
    const HRESULT result = LoadTypeLibEx(server.Path().c_str(), REGKIND_NONE, library.GetAddressOf());
    if (FAILED(result)) {
        Fail(server.Name() + ": holds no usable type library: " + ResultText(result) +
             ". The file is damaged or incomplete; nothing was registered.");
    }
}

// The nearest to the key, itself or above, that is there must be writable.
void CheckWritable(std::wstring key) {
    for (; !key.empty(); key.resize(key.find_last_of(L'\\') == key.npos ? 0 : key.find_last_of(L'\\'))) {
        CRegKey opened;
        const LSTATUS status =
            RegOpenKeyExW(HKEY_CLASSES_ROOT, key.c_str(), 0, KEY_READ | KEY_WRITE | DELETE, opened.Put());
        if (status == ERROR_SUCCESS) {
            return;
        }
        if (status != ERROR_FILE_NOT_FOUND) {
            Fail("HKEY_CLASSES_ROOT\\" + ToUtf8(key) + " cannot be written: " + ErrorText(static_cast<DWORD>(status)) +
                 ". Nothing was changed." + (status == ERROR_ACCESS_DENIED ? kElevate : ""));
        }
    }
}

void CheckRights() {
    for (const RegisteredClass& row : RegisteredClasses()) {
        CheckWritable(ServerKey(*row.id));
    }
    CheckWritable(TypeLibraryPathKey());
    CheckWritable(L"MediaFoundation\\Transforms\\Categories");
}

void Tell(const Options& options, const std::string& text) {
    if (!options.quiet) {
        Print(Printable(text) + "\n");
    }
}

// Calls an entry point of the DLL; what it says in boxes goes to standard error.
void Call(const CServer& server, const char* name) {
    EntryFn* const entry = server.Entry(name);
    CBoxWatch watch;
    const HRESULT result = entry();
    for (const std::string& text : watch.Stop()) {
        Say("nmfvdeint: " + Printable(server.Name() + " says: " + text) + "\n");
    }
    if (FAILED(result)) {
        Fail(server.Name() + ": " + name + " failed: " + ResultText(result) + "." +
             (result == E_ACCESSDENIED ? kElevate : ""));
    }
}

void CheckRegistered(const CServer& server) {
    const std::wstring library = ClassesText(TypeLibraryPathKey()).value_or(L"");
    if (!SamePath(library, server.Path())) {
        Fail(server.Name() + ": the classes are registered, but its type library is not: automation will not work. "
                             "\"nmfvdeint verify\" tells more.");
    }
}

// The DLL gives way to any file of a higher version that is registered, whatever it is.
void CheckKeeper(const std::wstring& path) {
    if (!HoldsClass(path, __uuidof(NMFVDeinterlace))) {
        Fail(ToUtf8(path) +
             ": is registered and has a higher version, so nothing was changed, but it does not hold the "
             "transform. Delete HKEY_CLASSES_ROOT\\" +
             ToUtf8(ClassKey(__uuidof(NMFVDeinterlace))) + " and register again.");
    }
}

// The platform unregisters a type library only when it can load it. One whose file is gone gets this file first.
void ReplaceLostTypeLibrary(const CServer& server) {
    const auto path = ClassesText(TypeLibraryPathKey());
    if (path && GetFileAttributesW(path->c_str()) == INVALID_FILE_ATTRIBUTES) {
        ComPtr<ITypeLib> library;
        (void)LoadTypeLibEx(server.Path().c_str(), REGKIND_REGISTER, library.GetAddressOf()); // else it is left over
    }
}

std::string Listed(const std::vector<std::string>& parts) {
    std::string text;
    for (const std::string& part : parts) {
        text += (text.empty() ? "" : ", ") + part;
    }
    return text;
}

} // namespace

void RunRegister(const Command& command) {
    const CPlatform platform;
    const CServer server(command.options);
    CheckPath(server);
    CheckTypeLibrary(server);
    CheckRights();
    const std::wstring before = RegisteredPath();
    const std::string earlier = ToUtf8(before) + ", " + VersionText(VersionOf(before));
    Call(server, "DllRegisterServer");
    const std::wstring after = RegisteredPath();
    if (after.empty() || (!SamePath(after, before) && !SamePath(after, server.Path()))) {
        Fail(server.Name() + ": says that it is registered, but it is not. Is another installation running?");
    }
    if (!SamePath(after, server.Path())) {
        CheckKeeper(after);
        Tell(command.options, "Nothing was changed: a newer copy is registered already, " + earlier + ". This one is " +
                                  server.NameAndVersion() +
                                  ". To go back to it, unregister the other first: nmfvdeint unregister --dll \"" +
                                  ToUtf8(before) + "\"");
        return;
    }
    CheckRegistered(server);
    const bool replaced = !before.empty() && !SamePath(before, server.Path());
    Tell(command.options, "Registered " + server.NameAndVersion() + (replaced ? ", in place of " + earlier : "") + ".");
}

void RunUnregister(const Command& command) {
    const CPlatform platform;
    const CServer server(command.options);
    if (RegisteredParts().empty()) {
        Tell(command.options, "Nothing was changed: the transform is not registered.");
        return;
    }
    CheckRights();
    const std::wstring before = RegisteredPath();
    ReplaceLostTypeLibrary(server);
    Call(server, "DllUnregisterServer");
    const std::vector<std::string> left = RegisteredParts();
    if (left.empty()) {
        Tell(command.options,
             "Unregistered " + (before.empty() ? "what was left of a registration" : ToUtf8(before)) + ".");
        return;
    }
    // A copy whose file is gone does not keep its registration.
    if (!before.empty() && !SamePath(before, server.Path()) && SamePath(before, RegisteredPath())) {
        Tell(command.options, "Nothing was changed: another copy is registered, " + ToUtf8(before) + ", " +
                                  VersionText(VersionOf(before)) + ". To unregister that one: nmfvdeint unregister " +
                                  "--dll \"" + ToUtf8(before) + "\"");
        return;
    }
    Fail("some of the registration could not be removed: " + Listed(left) + ". \"nmfvdeint verify\" tells more.");
}

} // namespace host
