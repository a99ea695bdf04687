// The command line as a whole: a verb, its files and the options.
#pragma once

#include "host/command/Options.h"

#include <span>
#include <string>
#include <string_view>

namespace host {

struct Command;

// One thing that the tool can do. The first row of a table is what happens when no verb is named.
struct VerbRow {
    std::string_view name;
    std::string_view arguments; // for the help
    std::string_view help;
    std::size_t leastFiles;
    std::size_t mostFiles;
    void (*run)(const Command& command);            // throws HostError
    std::span<const std::string_view> options = {}; // the only ones that it knows; empty: all but the listed-only ones
};

struct Command {
    const VerbRow* verb = nullptr;
    bool isVerbNamed = false;
    std::string input;
    std::vector<std::string> inputs; // all that are named; without an output each gets one of its own
    std::string output;              // empty when none is named
    OutputKind outputKind = OutputKind::None;
    Options options;
};

// Throws HostError with ExitCode::Usage. With --help or --version the files are not looked at.
Command ParseCommand(std::span<const VerbRow> verbs, std::span<const std::string> arguments);

bool Knows(const VerbRow& verb, const OptionRow& option);

// What --help prints; for the verb alone after its name.
std::string HelpText(std::span<const VerbRow> verbs);
std::string VerbHelpText(std::span<const VerbRow> verbs, const VerbRow& verb);

// The output that an input gets when none is named: NAME-deinterlaced.EXT in `folder`, or beside the input when that is
// empty. A kind of its own gives the extension; else the input's, or .avi when that says nothing.
std::string OutputBeside(const std::string& input, const std::string& folder, std::optional<OutputKind> kind);

// What an output is by its name: "-" a Y4M pipe, else by extension. Throws HostError when the extension says nothing.
OutputKind OutputKindOf(std::string_view path);

// Throws HostError with ExitCode::Input when the clip cannot be given to the transform in this format.
void CheckFeed(const ClipInfo& clip, Pixels feed, const std::string& name);

} // namespace host
