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
    std::string input;
    std::string output; // empty when there is none
    OutputKind outputKind = OutputKind::None;
    Options options;
};

// Throws HostError with ExitCode::Usage. With --help or --version the files are not looked at.
Command ParseCommand(std::span<const VerbRow> verbs, std::span<const std::string> arguments);

// What --help prints.
std::string HelpText(std::span<const VerbRow> verbs);

// What an output is by its name: "-" a Y4M pipe, else by extension. Throws HostError when the extension says nothing.
OutputKind OutputKindOf(std::string_view path);

// Throws HostError with ExitCode::Input when the clip cannot be given to the transform in this format.
void CheckFeed(const ClipInfo& clip, Pixels feed, const std::string& name);

} // namespace host
