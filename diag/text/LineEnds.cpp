#include "diag/text/LineEnds.h"

#include <cstring>
#include <limits>

namespace {

// Calls `take` with each run of characters and each line end of the finished text, in order.
template <typename Function>
void ForEachPiece(const char* text, Function take) {
    while (*text) {
        const std::size_t run = std::strcspn(text, "\r\n");
        if (run > 0) {
            take(text, run);
            text += run;
            continue;
        }
        take("\r\n", std::size_t{2});
        text += text[0] == '\r' && text[1] == '\n' ? 2 : 1;
    }
}

} // namespace

BufferResult AppendWithLineEnds(CBaseBuffer& buffer, const char* text) {
    std::size_t bytes = 0;
    ForEachPiece(text, [&](const char*, std::size_t count) { bytes += count; });
    const auto room = static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max() - buffer.Length());
    if (bytes > room || !buffer.CBaseBuffer::Reserve(buffer.Length() + static_cast<std::int32_t>(bytes))) {
        return kBufferOutOfMemory;
    }
    ForEachPiece(text, [&](const char* piece, std::size_t count) {
        (void)buffer.Append(piece, static_cast<std::int32_t>(count)); // reserved above
    });
    return kBufferOk;
}
