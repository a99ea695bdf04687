#include "host/HostError.h"
#include "host/console/Console.h"
#include "host/console/Interrupt.h"
#include "host/console/Text.h"
#include "host/transform/Platform.h"
#include "host/verbs/ClipRun.h"
#include "host/verbs/Verbs.h"

#include <algorithm>
#include <filesystem>

namespace host {

namespace {

namespace fs = std::filesystem;

constexpr std::wstring_view kClipExtensions[] = {L".y4m", L".avi",  L".mp4", L".m4v",  L".mov", L".mkv",
                                                 L".mpg", L".mpeg", L".ts",  L".m2ts", L".wmv", L".webm"};

// What this program has made out of a clip before is no clip to work on.
bool IsClip(const fs::path& path) {
    std::wstring extension = path.extension().wstring();
    CharLowerW(extension.data());
    return !path.stem().wstring().ends_with(L"-deinterlaced") &&
           std::find(std::begin(kClipExtensions), std::end(kClipExtensions), extension) != std::end(kClipExtensions);
}

// The clips in the folder, by name. Throws HostError with ExitCode::Input when there are none.
std::vector<std::string> ClipsIn(const std::string& folder) {
    std::vector<std::string> clips;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(ToWide(folder), error)) {
        if (IsClip(entry.path())) {
            clips.push_back(ToUtf8(entry.path().wstring()));
        }
    }
    if (error || clips.empty()) {
        throw HostError(ExitCode::Input, folder + ": is a folder without clips.");
    }
    std::sort(clips.begin(), clips.end());
    return clips;
}

std::vector<std::string> ExpandInputs(const Command& command) {
    std::vector<std::string> inputs;
    for (const std::string& input : command.inputs) {
        std::error_code error;
        if (input != "-" && fs::is_directory(ToWide(input), error)) {
            const auto clips = ClipsIn(input);
            inputs.insert(inputs.end(), clips.begin(), clips.end());
        } else {
            inputs.push_back(input);
        }
    }
    return inputs;
}

// The command for one of several inputs, or for one that names no output.
Command CommandFor(const Command& command, const std::string& input) {
    Command one = command;
    one.input = input;
    if (command.options.to == OutputKind::None) {
        return one;
    }
    if (input == "-") {
        throw HostError(ExitCode::Usage, "no output is named for standard input; \"-\" is standard output.");
    }
    one.output = OutputBeside(input, command.options.outDir, command.options.to);
    one.outputKind = OutputKindOf(one.output);
    if (!command.options.quiet) {
        Say(Printable(input) + " -> " + Printable(one.output) + "\n");
    }
    return one;
}

// A clip that fails does not keep the others from their turn; the first failure is the run's.
void RunEach(const Command& command, const std::vector<std::string>& inputs) {
    if (!command.options.stills.empty()) {
        throw HostError(ExitCode::Usage, "--still is for one clip: several would write the same file.");
    }
    std::size_t failed = 0;
    ExitCode first = ExitCode::Ok;
    for (const std::string& input : inputs) {
        try {
            RunClip(CommandFor(command, input));
        } catch (const HostError& error) {
            ThrowIfInterrupted();
            Say("nmfvdeint: " + Printable(error.what()) + "\n");
            first = failed++ == 0 ? error.Code() : first;
        }
    }
    if (failed != 0) {
        throw HostError(first, std::to_string(failed) + " of " + std::to_string(inputs.size()) + " clips failed.");
    }
}

} // namespace

void RunDeinterlace(const Command& command) {
    const CPlatform platform;
    if (!command.output.empty()) {
        RunClip(command);
        return;
    }
    const std::vector<std::string> inputs = ExpandInputs(command);
    if (!command.options.outDir.empty()) {
        std::error_code error;
        fs::create_directories(ToWide(command.options.outDir), error); // what is wrong with it shows at the first file
    }
    if (inputs.size() == 1) {
        RunClip(CommandFor(command, inputs[0]));
    } else {
        RunEach(command, inputs);
    }
}

} // namespace host
