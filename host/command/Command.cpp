#include "host/command/Command.h"

#include "host/HostError.h"

#include <algorithm>

namespace host {

namespace {

[[noreturn]] void Misused(const std::string& text) {
    throw HostError(ExitCode::Usage, text);
}

struct Extension {
    std::string_view extension;
    OutputKind kind;
};

constexpr Extension kExtensions[] = {
    {".y4m", OutputKind::Y4m}, {".avi", OutputKind::Avi}, {".raw", OutputKind::Raw}, {".yuv", OutputKind::Raw}};

// A lone word that is nearly a verb is a slip, not a file: files have an extension or a folder.
void RefuseSlip(std::span<const VerbRow> verbs, const std::string& word) {
    if (word.find_first_of("./\\") != word.npos) {
        return;
    }
    std::vector<std::string_view> names;
    for (const VerbRow& verb : verbs) {
        names.push_back(verb.name);
    }
    if (const std::string_view near = NearMiss(word, names); !near.empty()) {
        Misused("there is no verb " + word + "; did you mean " + std::string(near) + "? (A file of that name is ./" +
                word + ")");
    }
}

const VerbRow& TakeVerb(std::span<const VerbRow> verbs, std::vector<std::string>& files) {
    if (files.empty()) {
        return verbs[0];
    }
    for (const VerbRow& verb : verbs) {
        if (files[0] == verb.name) {
            files.erase(files.begin());
            return verb;
        }
    }
    RefuseSlip(verbs, files[0]);
    return verbs[0];
}

bool Knows(const VerbRow& verb, std::string_view option) {
    if (!verb.options.empty()) {
        return std::find(verb.options.begin(), verb.options.end(), option) != verb.options.end();
    }
    const auto rows = AllOptions();
    return std::none_of(rows.begin(), rows.end(),
                        [option](const OptionRow& row) { return row.name == option && row.listedOnly; });
}

void CheckOptions(const VerbRow& verb, const Options& options) {
    for (const std::string_view given : options.given) {
        if (!Knows(verb, given)) {
            Misused(std::string(verb.name) + " has no option " + std::string(given) +
                    "; nmfvdeint --help tells which it has.");
        }
    }
}

std::string UsageOf(const VerbRow& verb, bool named) {
    std::string usage = "nmfvdeint";
    for (const std::string_view word : {named ? verb.name : std::string_view(), verb.arguments}) {
        usage += word.empty() ? "" : " " + std::string(word);
    }
    return usage;
}

void CheckTogether(const Options& options) {
    struct Conflict {
        bool present;
        const char* text;
    };
    const bool otherThanRaw = options.from && *options.from != InputKind::Raw;
    const Conflict conflicts[] = {
        {options.registered && !options.dll.empty(), "--registered and --dll name two different transforms: give one."},
        {options.raw && otherThanRaw, "--raw says that the input is raw frames, --from that it is not: give one."},
        {!options.raw && options.from == InputKind::Raw, "--from raw needs --raw WxH:FORMAT@FPS: the frames do not say "
                                                         "what they are."},
    };
    for (const Conflict& conflict : conflicts) {
        if (conflict.present) {
            Misused(conflict.text);
        }
    }
}

void CheckFiles(const VerbRow& verb, bool first, const std::vector<std::string>& files, const Options& options) {
    const bool noOutput = options.to == OutputKind::None;
    const std::size_t least = noOutput ? std::min<std::size_t>(verb.leastFiles, 1) : verb.leastFiles;
    const std::size_t most = noOutput ? std::min<std::size_t>(verb.mostFiles, 1) : verb.mostFiles;
    const std::string usage = UsageOf(verb, !first);
    if (files.size() < least) {
        Misused(files.empty() ? "no input is named. Usage: " + usage + "; nmfvdeint --help tells more."
                              : "no output is named. Usage: " + usage + "; --to none needs no output.");
    }
    if (files.size() > most) {
        Misused("\"" + files[most] + "\" is one word too many. Usage: " + usage);
    }
}

} // namespace

OutputKind OutputKindOf(std::string_view path) {
    if (path == "-") {
        return OutputKind::Y4m;
    }
    std::string lower(path);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    for (const Extension& known : kExtensions) {
        if (lower.ends_with(known.extension)) {
            return known.kind;
        }
    }
    Misused(std::string(path) + ": its name does not say what to write. Let it end in .y4m, .avi or .raw, or add "
                                "--to y4m, --to avi or --to raw.");
}

Command ParseCommand(std::span<const VerbRow> verbs, std::span<const std::string> arguments) {
    Command command;
    std::vector<std::string> files = ReadOptions(AllOptions(), arguments, command.options);
    command.verb = &TakeVerb(verbs, files);
    if (command.options.help || command.options.version) {
        return command;
    }
    CheckTogether(command.options);
    CheckOptions(*command.verb, command.options);
    CheckFiles(*command.verb, command.verb == verbs.data(), files, command.options);
    command.input = files.empty() ? command.options.live : files[0];
    if (files.size() > 1) {
        command.output = files[1];
        command.outputKind = command.options.to ? *command.options.to : OutputKindOf(command.output);
        if (command.output == "-" && command.outputKind == OutputKind::Avi) {
            Misused("AVI cannot be written to a pipe, as its header is completed at the end: name a file, or use "
                    "--to y4m.");
        }
    }
    return command;
}

void CheckFeed(const ClipInfo& clip, Pixels feed, const std::string& name) {
    if (TraitsOf(feed).evenWidth && clip.width % 2 != 0) {
        throw HostError(ExitCode::Input, name + ": the picture is " + std::to_string(clip.width) +
                                             " pixels wide, but " + TraitsOf(feed).name +
                                             " shares chroma between two pixels and needs an even width. Use --feed "
                                             "iyu2 or --feed rgb24, or crop the clip.");
    }
    if (clip.width % 2 != 0 && (clip.layout == Layout::Yuy2 || clip.layout == Layout::Uyvy)) {
        throw HostError(ExitCode::Input,
                        name + ": 4:2:2 frames of an odd width (" + std::to_string(clip.width) + ") cannot be read.");
    }
}

} // namespace host
