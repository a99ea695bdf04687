#pragma once

#include "host/formats/ByteStream.h"

namespace host {

enum class InputKind { Y4m, Avi, Raw, Media };

// What an input is by its first bytes, which stay in it: Y4M or AVI, else Media when it is a file that has a name.
// Throws HostError with ExitCode::Input for what is empty, and for anything else that comes by standard input or a
// pipe.
InputKind KindByContent(CInputStream& input, bool named);

} // namespace host
