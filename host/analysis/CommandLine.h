// Command lines that can be copied.
#pragma once

#include "host/command/Command.h"

#include <string>
#include <string_view>

namespace host {

// The word as a shell takes it for one: in quotation marks where it holds blanks or signs that mean something there. A
// name that would be taken for an option gets its folder.
std::string Quoted(std::string_view word);

// "clip.y4m" becomes "clip-deinterlaced.y4m", beside it; what cannot be written becomes AVI. "-" stays.
std::string OutputNameFor(std::string_view input);

// The whole line that deinterlaces the command's input to `output`, reading it as the command says, with `settings`
// after it. An empty output is left out, as --to none wants it.
std::string DeinterlaceLine(const Command& command, std::string_view output, std::string_view settings);

} // namespace host
