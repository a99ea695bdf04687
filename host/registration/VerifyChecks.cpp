#include "host/registration/VerifyChecks.h"

#include "host/HostError.h"
#include "host/transform/DllFile.h"
#include "host/files/Files.h"
#include "host/transform/RegisteredTransform.h"
#include "host/console/Text.h"

#include <NMFVDeinterlace.h>
#include <filesystem>
#include <fstream>
#include <oleauto.h>
#include <wrl/client.h>

using Microsoft::WRL::ComPtr;

namespace host {

namespace {

constexpr char kPutBack[] = "put NMFVDeitrx.dll back there, or register the copy that you have: nmfvdeint register "
                            "--dll FILE";
constexpr char kReplace[] =
    "remove that file or put an undamaged NMFVDeitrx.dll in its place, then: nmfvdeint register";
constexpr const char* kExports[] = {"DllGetClassObject", "DllCanUnloadNow", "DllRegisterServer", "DllUnregisterServer"};

Finding Fine(std::string text) {
    return {Verdict::Fine, std::move(text), {}};
}

Finding Wrong(std::string text, std::string cure) {
    return {Verdict::Wrong, std::move(text), std::move(cure)};
}

Finding NoFile() {
    return {Verdict::NotLookedAt, "no file is registered", {}};
}

std::string Key(const std::wstring& path) {
    return "HKEY_CLASSES_ROOT\\" + ToUtf8(path);
}

bool Exists(const std::wstring& path) {
    return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

// What writes the registration anew, for the copy that is registered if that is one.
std::string RegisterAgain(const VerifySubject& subject) {
    const bool other = !SamePath(subject.registered, DllBesideProgram()) &&
                       HoldsClass(subject.registered, *RegisteredClasses()[kTransformRow].id);
    return "nmfvdeint register" + (other ? " --dll \"" + ToUtf8(subject.registered) + "\"" : "");
}

Finding LookForFile(const VerifySubject& subject, std::size_t) {
    if (subject.registered.empty()) {
        return NoFile();
    }
    const std::string name = ToUtf8(subject.registered);
    if (!Exists(subject.registered)) {
        return Wrong(name + ": " + ErrorText(GetLastError()), kPutBack);
    }
    return Fine(name);
}

// The processor that a program file is for; 0 when it is no program file.
WORD MachineOf(const std::wstring& path) {
    std::ifstream file(std::filesystem::path(path), std::ios::binary);
    IMAGE_DOS_HEADER dos{};
    DWORD signature = 0;
    IMAGE_FILE_HEADER header{};
    if (!file.read(reinterpret_cast<char*>(&dos), sizeof dos) || dos.e_magic != IMAGE_DOS_SIGNATURE ||
        !file.seekg(dos.e_lfanew) || !file.read(reinterpret_cast<char*>(&signature), sizeof signature) ||
        signature != IMAGE_NT_SIGNATURE || !file.read(reinterpret_cast<char*>(&header), sizeof header)) {
        return 0;
    }
    return header.Machine;
}

Finding LookAtMachine(const VerifySubject& subject, std::size_t) {
    if (subject.registered.empty()) {
        return NoFile();
    }
    const WORD machine = MachineOf(subject.registered);
    if (machine != IMAGE_FILE_MACHINE_AMD64) {
        return Wrong(machine == 0 ? "the file is no program file, or cannot be read"
                                  : "the file is for another processor than x64",
                     kReplace);
    }
    return Fine("x64");
}

Finding LookAtExports(const VerifySubject& subject, std::size_t) try {
    if (subject.registered.empty()) {
        return NoFile();
    }
    const CDllFile file(subject.registered);
    for (const char* name : kExports) {
        if (!file.Find<void()>(name)) {
            return Wrong(std::string("the file does not export ") + name, kReplace);
        }
    }
    return Fine("loads, and exports all four entry points");
} catch (const HostError& error) {
    return Wrong(error.what(), kReplace);
}

Finding LookAtVersion(const VerifySubject& subject, std::size_t) {
    if (subject.registered.empty()) {
        return NoFile();
    }
    const auto version = VersionOf(subject.registered);
    const std::string text = VersionText(version);
    if (!version) {
        return Wrong("the registered file is " + text, kReplace);
    }
    if (subject.beside.empty() || SamePath(subject.beside, subject.registered)) {
        return Fine(text);
    }
    const auto other = VersionOf(subject.beside);
    const std::string compared = text + "; " + ToUtf8(subject.beside) + " is " + VersionText(other);
    return other && *other > *version
               ? Wrong(compared, "nmfvdeint register --dll \"" + ToUtf8(subject.beside) + "\" takes the newer one")
               : Fine(compared);
}

Finding LookAtClassKey(const VerifySubject& subject, std::size_t row) {
    const RegisteredClass& registered = RegisteredClasses()[row];
    const std::wstring key = ClassKey(*registered.id);
    const std::wstring server = ServerKey(*registered.id);
    if (!ClassesKeyExists(key)) {
        return Wrong(Key(key) + " is missing", RegisterAgain(subject));
    }
    const struct {
        const std::wstring& key;
        const wchar_t* value;
        const std::wstring expected;
    } kValues[] = {
        {key, nullptr, registered.name},
        {server, nullptr, subject.registered},
        {server, L"ThreadingModel", L"Both"},
    };
    for (const auto& value : kValues) {
        const auto found = ClassesText(value.key, value.value);
        if (!found || found->empty()) {
            return Wrong(Key(value.key) + " has no " + (value.value ? ToUtf8(value.value) : "value"),
                         RegisterAgain(subject));
        }
        if (!value.expected.empty() && !SamePath(*found, value.expected)) {
            return Wrong(Key(value.key) + " says \"" + ToUtf8(*found) + "\", not \"" + ToUtf8(value.expected) + "\"",
                         RegisterAgain(subject));
        }
    }
    return Fine(ToUtf8(registered.name));
}

Finding LookAtCategory(const VerifySubject& subject, std::size_t row) {
    if (!IsInCategory(*RegisteredCategories()[row].id)) {
        return Wrong("Media Foundation does not list the transform there", RegisterAgain(subject));
    }
    return Fine("Media Foundation lists the transform there");
}

Finding LookAtTypeLibraryPath(const VerifySubject& subject, std::size_t) {
    const auto path = ClassesText(TypeLibraryPathKey());
    if (!path) {
        return Wrong(Key(TypeLibraryPathKey()) + " is missing", RegisterAgain(subject));
    }
    if (!SamePath(*path, subject.registered)) {
        return Wrong(Key(TypeLibraryPathKey()) + " names another file, " + ToUtf8(*path), RegisterAgain(subject));
    }
    return Fine(ToUtf8(*path));
}

Finding LookAtTypeLibrary(const VerifySubject& subject, std::size_t) {
    ComPtr<ITypeLib> library;
    ComPtr<ITypeInfo> control;
    HRESULT result =
        LoadRegTypeLib(kTypeLibraryId, kTypeLibraryMajor, kTypeLibraryMinor, LOCALE_NEUTRAL, library.GetAddressOf());
    if (FAILED(result)) {
        return Wrong("cannot be loaded by its identifier: " + ResultText(result), RegisterAgain(subject));
    }
    result = library->GetTypeInfoOfGuid(kControlInterfaceId, control.GetAddressOf());
    if (FAILED(result)) {
        return Wrong("does not describe the control interface: " + ResultText(result), kReplace);
    }
    return Fine("loads, and describes the control interface");
}

Finding LookAtObject(const VerifySubject& subject, std::size_t row) {
    const RegisteredClass& registered = RegisteredClasses()[row];
    ComPtr<IUnknown> object;
    const HRESULT result = CoCreateInstance(*registered.id, nullptr, CLSCTX_INPROC_SERVER, *registered.shows,
                                            reinterpret_cast<void**>(object.GetAddressOf()));
    (void)object.Detach(); // never let go, as in CHeldTransform
    if (SUCCEEDED(result)) {
        return Fine("created");
    }
    return Wrong("cannot be created: " + ResultText(result), RegisterAgain(subject));
}

Finding LookAtAutomation(const VerifySubject& subject, std::size_t) {
    ComPtr<IDispatch> object;
    DISPID id = 0;
    wchar_t name[] = L"Enabled";
    wchar_t* names[] = {name};
    HRESULT result = CoCreateInstance(*RegisteredClasses()[kTransformRow].id, nullptr, CLSCTX_INPROC_SERVER,
                                      IID_PPV_ARGS(object.GetAddressOf()));
    if (SUCCEEDED(result)) {
        result = object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_NEUTRAL, &id);
    }
    (void)object.Detach(); // never let go, as in CHeldTransform
    return SUCCEEDED(result) ? Fine("finds members by name")
                             : Wrong("does not find members by name: " + ResultText(result), RegisterAgain(subject));
}

constexpr VerifyCheck kChecks[] = {
    {"key of the transform", &LookAtClassKey, kTransformRow},
    {"key of the settings page", &LookAtClassKey, kSettingsPageRow},
    {"key of the region page", &LookAtClassKey, kRegionPageRow},
    {"key of the about page", &LookAtClassKey, kAboutPageRow},
    {"file", &LookForFile},
    {"processor", &LookAtMachine},
    {"entry points", &LookAtExports},
    {"version", &LookAtVersion},
    {"own category", &LookAtCategory, kOwnCategoryRow},
    {"video effects", &LookAtCategory, kVideoEffectRow},
    {"type library's key", &LookAtTypeLibraryPath},
    {"type library", &LookAtTypeLibrary},
    {"transform", &LookAtObject, kTransformRow},
    {"automation", &LookAtAutomation},
    {"settings page", &LookAtObject, kSettingsPageRow},
    {"region page", &LookAtObject, kRegionPageRow},
    {"about page", &LookAtObject, kAboutPageRow},
};

} // namespace

std::span<const VerifyCheck> VerifyChecks() {
    return kChecks;
}

} // namespace host
