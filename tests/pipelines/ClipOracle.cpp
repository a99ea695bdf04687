// Compares files of raw frames, before and after the transform, with the oracle of the pixel rules.
//
//     clip_oracle BEFORE AFTER WIDTH HEIGHT BITS merge|odd|even
#include "tests/support/OraclePixels.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

namespace {

using Frame = std::vector<std::uint8_t>;

// False where the file ends before the frame.
bool Read(std::ifstream& file, Frame& frame) {
    return static_cast<bool>(
        file.read(reinterpret_cast<char*>(frame.data()), static_cast<std::streamsize>(frame.size())));
}

int Differ(long frame, const char* how, long at = 0) {
    std::printf("frame %ld: %s %ld\n", frame, how, at);
    return 1;
}

} // namespace

int main(int count, char** arguments) {
    if (count != 7) {
        return 2;
    }
    std::ifstream before(arguments[1], std::ios::binary), after(arguments[2], std::ios::binary);
    const OracleFrame shape{std::stoll(arguments[3]), std::stoll(arguments[4]), std::stoll(arguments[5])};
    const std::string method = arguments[6];
    const OracleOptions options{.even = method == "even", .merge = method == "merge"};
    Frame in(static_cast<std::size_t>(shape.Bytes())), out(in.size()), expected(in.size());
    long frames = 0, changed = 0;
    for (; Read(before, in); ++frames) {
        if (!Read(after, out)) {
            return Differ(frames, "is missing after");
        }
        OracleDeinterlace(shape, options, in.data(), expected.data());
        if (out != expected) {
            const auto at = std::mismatch(out.begin(), out.end(), expected.begin()).first - out.begin();
            return Differ(frames, "breaks the rules, first in row", at / shape.Stride());
        }
        changed += out != in;
    }
    if (after.peek() != EOF) {
        return Differ(frames, "is one too many, after");
    }
    std::printf("%ld frames, %ld changed\n", frames, changed);
    return 0;
}
