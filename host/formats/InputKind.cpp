#include "host/formats/InputKind.h"

#include "host/HostError.h"

#include <cstring>

namespace host {

namespace {

bool BeginsWith(const std::vector<std::uint8_t>& bytes, std::size_t offset, std::string_view text) {
    return bytes.size() >= offset + text.size() && std::memcmp(bytes.data() + offset, text.data(), text.size()) == 0;
}

} // namespace

InputKind KindByContent(CInputStream& input, bool named) {
    const auto first = input.Peek(12);
    if (BeginsWith(first, 0, "YUV4MPEG2")) {
        return InputKind::Y4m;
    }
    if (BeginsWith(first, 0, "RIFF") && BeginsWith(first, 8, "AVI ")) {
        return InputKind::Avi;
    }
    if (first.empty()) {
        throw HostError(ExitCode::Input, input.Name() + ": it is empty.");
    }
    // Standard input may be a file as well, but the platform opens files by their names.
    if (!named || !input.Size()) {
        throw HostError(ExitCode::Input, input.Name() + ": this is neither Y4M nor AVI. Raw frames need --raw "
                                                        "WxH:FORMAT@FPS; other video must be named as a file.");
    }
    return InputKind::Media;
}

} // namespace host
