#include "diag/text/Buffers.h"
#include "diag/text/LineEnds.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

namespace {

// Notes the sizes asked for, and has no memory beyond a limit.
struct Memory {
    static inline std::vector<std::size_t> asked;
    static inline std::size_t limit = 0;

    static void* Reallocate(void* block, std::size_t bytes) {
        asked.push_back(bytes);
        return bytes > limit ? nullptr : std::realloc(block, bytes);
    }
};

class LimitedBuffer : public CBaseBuffer {
public:
    explicit LimitedBuffer(std::size_t limit = 1000)
        : CBaseBuffer(&std::free, &Memory::Reallocate) {
        Memory::asked.clear();
        Memory::limit = limit;
    }
};

std::string TextOf(const CBaseBuffer& buffer) {
    return std::string(buffer.Data(), static_cast<std::size_t>(buffer.Length()));
}

TEST(Buffer, GrowsToTheByte) {
    LimitedBuffer buffer(8);
    EXPECT_EQ(kBufferOk, buffer.Append("abc", 3));
    EXPECT_EQ(kBufferOk, buffer.Append("defgh", 5));
    EXPECT_EQ((std::vector<std::size_t>{3, 8}), Memory::asked);
    EXPECT_EQ(kBufferOutOfMemory, buffer.Append("i", 1));
    EXPECT_EQ("abcdefgh", TextOf(buffer));
    buffer.Clear();
    EXPECT_EQ(kBufferOk, buffer.Append("again", 5));
    EXPECT_EQ(3u, Memory::asked.size()) << "cleared storage was not used again";
    EXPECT_EQ(8, buffer.Capacity());
    EXPECT_EQ(kBufferOutOfMemory, buffer.Append("", std::numeric_limits<std::int32_t>::max()));
    buffer.ReleaseStorage();
    EXPECT_EQ(0, buffer.Length() + buffer.Capacity());
}

TEST(Buffer, Take) {
    CBuffer one;
    CBuffer two;
    one.Append("one", 3);
    two.Append("second", 6);
    EXPECT_EQ(kBufferOk, one.Take(&two));
    EXPECT_EQ("second", TextOf(one));
    EXPECT_EQ(6, one.Capacity());
    EXPECT_EQ("one", TextOf(two));
    EXPECT_EQ(kBufferNullPointer, one.Take(nullptr));
}

TEST(Buffer, Format) {
    LimitedBuffer buffer(6);
    EXPECT_EQ(kBufferOk, buffer.Format("%d-%s", 12, "ab"));
    EXPECT_EQ(std::string("12-ab\0", 6), TextOf(buffer));
    EXPECT_EQ(kBufferOutOfMemory, buffer.Format("%s", "longer"));
    EXPECT_EQ(std::string("12-ab\0", 6), TextOf(buffer));
}

TEST(LineEnds, BecomePairs) {
    constexpr std::pair<const char*, const char*> kCases[] = {
        {"", ""},
        {"a\r\nb", "a\r\nb"},
        {"a\nb\n", "a\r\nb\r\n"},
        {"a\rb\r", "a\r\nb\r\n"},
        {"\n\r", "\r\n\r\n"},
        {"\r\r\n\n", "\r\n\r\n\r\n"},
    };
    for (const auto& [text, written] : kCases) {
        CBuffer buffer;
        buffer.Append("<", 1);
        EXPECT_EQ(kBufferOk, AppendWithLineEnds(buffer, text));
        EXPECT_EQ(std::string("<") + written, TextOf(buffer));
    }
    LimitedBuffer smaller(5);
    smaller.Append("<", 1);
    EXPECT_EQ(kBufferOutOfMemory, AppendWithLineEnds(smaller, "abc\n"));
    EXPECT_EQ("<", TextOf(smaller)) << "half a line";
}

} // namespace
