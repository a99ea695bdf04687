// nmfvdeint: the deinterlacing transform from the command line.
#include "host/command/Command.h"
#include "host/HostError.h"
#include "host/console/Console.h"
#include "host/console/Interrupt.h"
#include "host/console/Text.h"
#include "host/transform/Platform.h"
#include "host/verbs/Verbs.h"

#include "Product.h"

#include <exception>
#include <new>
#include <shellapi.h>

namespace {

void ShowHelp(const host::Command& command);

constexpr std::string_view kRegistrationOptions[] = {"--dll", "--quiet"};

constexpr std::string_view kPagesOptions[] = {"--live", "--no-save", "--sheet", "--dll",   "--registered", "--quiet",
                                              "--from", "--raw",     "--feed",  "--lines", "--cut-off"};

constexpr host::VerbRow kVerbs[] = {
    {"deinterlace", "INPUT [OUTPUT]",
     "Sends INPUT through the transform to OUTPUT, or without one to NAME-deinterlaced beside it. With --out-dir any "
     "number of inputs; --to none writes nothing.",
     1, 2, &host::RunDeinterlace},
    {"analyse", "INPUT",
     "Prints what the combing detector counts in every frame, and in the end what the clip is (progressive, interlaced "
     "and in which order, telecined, mixed), what the automatic mode does with it, and a command line to copy. --json "
     "prints one object instead, --plot draws it. Needs no transform.",
     1, 1, &host::RunAnalyse},
    {"pages", "",
     "Shows the transform's property pages with your saved settings. What you apply there becomes your saved settings "
     "when the sheet closes, unless --no-save is given; nothing applied, nothing saved. With --live INPUT each change "
     "is seen on the next frame.",
     0, 0, &host::RunPages, kPagesOptions},
    {"register", "",
     "Registers NMFVDeitrx.dll (the one beside this program, or --dll FILE) for all programs, without any box. A newer "
     "registered copy stays. Needs administrator rights.",
     0, 0, &host::RunRegister, kRegistrationOptions},
    {"unregister", "", "Takes that registration away; another copy's registration stays.", 0, 0, &host::RunUnregister,
     kRegistrationOptions},
    {"verify", "",
     "Checks the registration piece by piece, creates what is registered, and says what is wrong and how to fix it.", 0,
     0, &host::RunVerify, kRegistrationOptions},
    {"help", "", "This text, as --help.", 0, 0, &ShowHelp, kRegistrationOptions},
};

void ShowHelp(const host::Command& command) {
    const bool one = command.isVerbNamed && command.verb->run != &ShowHelp;
    host::Print(one ? host::VerbHelpText(kVerbs, *command.verb) : host::HelpText(kVerbs));
}

std::vector<std::string> Arguments() {
    int count = 0;
    wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::string> arguments;
    for (int i = 1; i < count; ++i) {
        arguments.push_back(host::ToUtf8(words[i]));
    }
    LocalFree(words);
    return arguments;
}

void Run() {
    const std::vector<std::string> arguments = Arguments();
    const host::Command command = host::ParseCommand(kVerbs, arguments);
    if (command.options.help) {
        ShowHelp(command);
    } else if (command.options.version) {
        host::Print("nmfvdeint " NMFV_VERSION_TEXT "\n");
    } else {
        host::WatchForInterrupt();
        command.verb->run(command);
    }
}

int Fail(host::ExitCode code, const std::string& text) {
    host::Say("nmfvdeint: " + host::Printable(text) + "\n");
    return static_cast<int>(code);
}

int RunToExitCode() {
    try {
        Run();
        return static_cast<int>(host::ExitCode::Ok);
    } catch (const host::HostError& error) {
        return Fail(error.Code(), error.what());
    } catch (const std::bad_alloc&) {
        return Fail(host::ExitCode::Transform, "there is not enough memory.");
    } catch (const std::exception& error) {
        return Fail(host::ExitCode::Transform, std::string("internal failure: ") + error.what());
    }
}

} // namespace

int main() {
    // The registered or named DLL may be damaged or lack another one: that is an error text, never a box that waits.
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
    host::EndProcess(RunToExitCode());
}
