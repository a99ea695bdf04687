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

std::string Lower(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    return lower;
}

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

// Nothing when the first word names none.
const VerbRow* TakeVerb(std::span<const VerbRow> verbs, std::vector<std::string>& files) {
    if (files.empty()) {
        return nullptr;
    }
    for (const VerbRow& verb : verbs) {
        if (files[0] == verb.name) {
            files.erase(files.begin());
            return &verb;
        }
    }
    RefuseSlip(verbs, files[0]);
    return nullptr;
}

void CheckOptions(const VerbRow& verb, const Options& options) {
    for (const std::string_view given : options.given) {
        const auto rows = AllOptions();
        const auto row = std::find_if(rows.begin(), rows.end(), [given](const auto& r) { return r.name == given; });
        if (!Knows(verb, *row)) {
            Misused(std::string(verb.name) + " has no option " + std::string(given) + "; nmfvdeint " +
                    std::string(verb.name) + " --help lists those that it has.");
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

void CheckTogether(const Options& options, const std::vector<std::string>& files) {
    struct Conflict {
        bool present;
        const char* text;
    };
    const bool otherThanRaw = options.from && *options.from != InputKind::Raw;
    const bool even = options.even.has_value();
    const Conflict conflicts[] = {
        {options.registered && !options.dll.empty(), "--registered and --dll name two different transforms: give one."},
        {options.raw && otherThanRaw, "--raw says that the input is raw frames, --from that it is not: give one."},
        {options.json && files.size() > 1 && files.back() == "-",
         "--json prints on standard output, where the clip goes: name a file for it."},
        {options.evenAndOdd, "--even and --odd exclude each other: give one."},
        {even && options.keepTop, "--keep works out which of --even and --odd it is: give one."},
        {!options.save && options.merge == true && (even || options.keepTop),
         "--method merge blends both fields, so it keeps none: leave --even, --odd or --keep away, or use --method "
         "rebuild."},
        {!options.save && options.sensitivity && options.mode && *options.mode != Mode::Auto,
         "--sensitivity is for --mode auto only: leave one of the two away."},
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
    const bool onlyInputs = options.to == OutputKind::None || !options.outDir.empty();
    const std::size_t most = !options.outDir.empty() ? files.size()
                             : onlyInputs            ? std::min<std::size_t>(verb.mostFiles, 1)
                                                     : verb.mostFiles;
    const std::string usage = UsageOf(verb, !first);
    if (files.size() < verb.leastFiles) {
        Misused("no input is named. Usage: " + usage + "; nmfvdeint --help tells more.");
    }
    if (files.size() > most) {
        Misused("\"" + files[most] + "\" is one word too many. Usage: " + usage);
    }
}

} // namespace

bool Knows(const VerbRow& verb, const OptionRow& option) {
    return verb.options.empty()
               ? !option.listedOnly
               : std::find(verb.options.begin(), verb.options.end(), option.name) != verb.options.end();
}

OutputKind OutputKindOf(std::string_view path) {
    if (path == "-") {
        return OutputKind::Y4m;
    }
    const std::string lower = Lower(path);
    for (const Extension& known : kExtensions) {
        if (lower.ends_with(known.extension)) {
            return known.kind;
        }
    }
    Misused(std::string(path) + ": its name does not say what to write. Let it end in .y4m, .avi or .raw, or add "
                                "--to y4m, --to avi or --to raw.");
}

std::string OutputBeside(const std::string& input, const std::string& folder, std::optional<OutputKind> kind) {
    const std::size_t slash = input.find_last_of("\\/");
    const std::size_t begin = slash == input.npos ? 0 : slash + 1;
    const std::size_t dot = input.find_last_of('.');
    const bool hasDot = dot != input.npos && dot > begin;
    const std::string stem = input.substr(begin, (hasDot ? dot : input.size()) - begin);
    std::string extension = ".avi";
    for (const Extension& known : kExtensions) {
        if (kind ? known.kind == *kind : hasDot && Lower(input).ends_with(known.extension)) {
            extension = known.extension;
            break;
        }
    }
    std::string place = folder.empty() ? input.substr(0, begin) : folder;
    if (!folder.empty() && !folder.ends_with('/') && !folder.ends_with('\\')) {
        place += '/';
    }
    return place + stem + "-deinterlaced" + extension;
}

Command ParseCommand(std::span<const VerbRow> verbs, std::span<const std::string> arguments) {
    Command command;
    std::vector<std::string> files = ReadOptions(AllOptions(), arguments, command.options);
    const VerbRow* const named = TakeVerb(verbs, files);
    command.verb = named ? named : verbs.data();
    command.isVerbNamed = named != nullptr;
    if (command.options.help || command.options.version) {
        return command;
    }
    CheckTogether(command.options, files);
    CheckOptions(*command.verb, command.options);
    CheckFiles(*command.verb, command.verb == verbs.data(), files, command.options);
    command.input = files.empty() ? command.options.live : files[0];
    command.inputs = files;
    if (files.size() > 1 && command.options.outDir.empty()) {
        command.inputs.resize(1);
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
