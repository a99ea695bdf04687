// Command lines that can be copied.
#pragma once

#include "host/command/Command.h"

#include <string>
#include <string_view>

namespace host {

// The word as a shell takes it for one: in quotation marks where it holds blanks or signs that mean something there. A
// name that would be taken for an option gets its folder.
std::string Quoted(std::string_view word);

// The output beside the input; "-" stays.
std::string OutputNameFor(const std::string& input);

// The whole line that deinterlaces the command's input to `output`, reading it as the command says, with `settings`
// after it. An empty output is left out, as --to none wants it.
std::string DeinterlaceLine(const Command& command, std::string_view output, std::string_view settings);

} // namespace host
