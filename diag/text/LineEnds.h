// Line ends as the trace file has them.
#pragma once

#include "diag/text/Buffers.h"

// Appends a terminated text with every line end made "\r\n": pairs stay, a lone "\r" or "\n" becomes a pair, so "\n\r"
// gives two. All of the text or, on kBufferOutOfMemory, nothing. The buffer may be another module's.
BufferResult AppendWithLineEnds(CBaseBuffer& buffer, const char* text);
