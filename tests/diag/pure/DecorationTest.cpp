#include "diag/text/ElapsedTime.h"
#include "diag/Trace.h"
#include "diag/text/TraceDecoration.h"
#include "diag/text/TracePaths.h"

#include <gtest/gtest.h>

#include <cwchar>
#include <string>

namespace {

struct World {
    static inline TraceTime now;
    static inline std::int32_t elapsed;
    static inline std::int32_t handles;
    static inline int restarts;

    static TraceSources Sources() {
        now = {12, 34, 56, 789};
        elapsed = 0;
        handles = 42;
        restarts = 0;
        return {[] { return now; }, [] { ++restarts; }, [] { return elapsed; }, [] { return handles; },
                []() -> std::uint32_t { return 0xBEEF; }};
    }
};

class Decoration : public testing::Test {
protected:
    std::string Line(std::uint32_t flags, const std::string& text) {
        char line[2048];
        m_decorator.Decorate(flags, text.c_str(), line, sizeof(line));
        return line;
    }

    TraceDecorator m_decorator{World::Sources()};
};

TEST_F(Decoration, Prefixes) {
    constexpr std::uint32_t kAll = kTraceTime | kTraceThread | kTraceHandles;
    const struct {
        std::uint32_t flags;
        const char* text;
        const char* line;
    } kCases[] = {
        {0, "\nx", "\r\nx"},
        {kAll, "x\ny", "x\ny"},
        {kAll, "", ""},
        {kAll, "\r\nx", "\r\nx"},
        {kTraceThread, "\n\nx", "\r\n\r\n0000beef: x"},
        {kTraceTime | kTraceThread, "\nx", "\r\n12:34:56.789: 0000beef: x"},
        {kTraceHandles, "\nx", "  42 x"},
        {kAll, "\n\nx", "  42 0000beef: x"},
    };
    for (const auto& c : kCases) {
        EXPECT_EQ(c.line, Line(c.flags, c.text)) << &c - kCases;
    }
    World::handles = -1;
    EXPECT_EQ("  -1 x", Line(kTraceHandles, "\nx"));
    World::handles = 123'456;
    EXPECT_EQ("123456 x", Line(kTraceHandles, "\nx"));
}

TEST_F(Decoration, PauseShowsAsAnEmptyLine) {
    World::elapsed = 90'000; // counts from the base on, which the first line reads
    EXPECT_EQ("\r\n12:34:56.789: a", Line(kTraceTime, "\na"));
    World::elapsed = 100;
    EXPECT_EQ("\r\n12:34:56.889: b", Line(kTraceTime, "\nb"));
    World::elapsed = 201;
    World::now = {};
    EXPECT_EQ("\r\n\n12:34:56.990: c", Line(kTraceTime, "\nc"));
    World::elapsed = 150; // another thread's line came between
    EXPECT_EQ("\r\n12:34:56.939: d", Line(kTraceTime, "\nd"));
    EXPECT_EQ("e", Line(kTraceTime, "e"));
    EXPECT_EQ(1, World::restarts);
}

TEST_F(Decoration, TimeOfDay) {
    Line(kTraceTime, "\nbase");
    constexpr std::int32_t kHour = 3'600'000;
    constexpr struct {
        std::int32_t elapsed;
        const char* time;
    } kCases[] = {
        {210, "12:34:56.999"},
        {211, "12:34:57.000"},
        {26 * 60'000, "13:00:56.789"},
        {12 * kHour, "00:34:56.789"},                           // tomorrow
        {35 * kHour + 25 * 60'000 + 3'210, "23:59:59.999"},     // its last millisecond
        {35 * kHour + 25 * 60'000 + 3'211, "24:00:00.000"},     // a day exactly
        {35 * kHour + 25 * 60'000 + 3'212, "+1d 00:00:00.001"}, // and more
        {0x7FFFFFFF, "+24d 09:06:20.436"},
    };
    for (const auto& c : kCases) {
        World::elapsed = c.elapsed;
        const std::string line = Line(kTraceTime, "\nx");
        EXPECT_EQ(std::string(c.time) + ": x", line.substr(line.find_first_not_of("\r\n"))) << c.elapsed;
    }
}

TEST_F(Decoration, Limits) {
    const std::string most = Line(kTraceTime | kTraceThread, std::string(24, '\n') + "x");
    EXPECT_EQ(48u, most.find_first_not_of("\r\n"));
    EXPECT_EQ('x', most.back());
    EXPECT_EQ(2047u, Line(kTraceTime, "\n" + std::string(2046, 'x')).size());
    EXPECT_DEATH(Line(0, std::string(25, '\n')), "");
}

TEST(ElapsedTime, CountsAndTicks) {
    constexpr std::int64_t kMany = std::int64_t{1} << 61;
    constexpr struct {
        StopwatchStart start;
        std::int64_t counter;
        std::uint32_t tick;
        std::int32_t elapsed;
    } kCases[] = {
        {{1000, 5, 0, 0}, 56, 999, 51},
        {{3, 0, 0, 0}, 2, 0, 666},
        {{10'000'000, 0, 0, 0}, 509'999, 0, 50},
        {{3'000'000'000, 0, 0, 0}, 3'000'000'000 * 2'000'000, 0, 2'000'000'000}, // times 1000 needs 63 bits and more
        {{10, 0, 0, 0}, kMany, 0, 0x7FFFFFFF},
        {{0, 5, 7, 100}, 56, 130, 37},
        {{1000, -1, 0, 0xFFFFFFF0}, 56, 0x10, 32}, // the tick count wrapped
        {{0, 0, 0, 1}, 0, 0, 0x7FFFFFFF},
    };
    for (const auto& c : kCases) {
        EXPECT_EQ(c.elapsed, ElapsedMilliseconds(c.start, c.counter, c.tick)) << &c - kCases;
    }
}

TEST(ElapsedTime, Text) {
    constexpr struct {
        std::int32_t elapsed;
        const char* text;
    } kCases[] = {{7, "007ms"}, {999, "999ms"}, {1000, "1.000s"}, {61'005, "61.005s"}};
    for (const auto& c : kCases) {
        char text[16];
        FormatElapsed(c.elapsed, text, sizeof(text));
        EXPECT_STREQ(c.text, text);
    }
}

TEST(TracePaths, SectionName) {
    wchar_t name[32];
    ASSERT_TRUE(MakeSectionName(0xAB12, L"c:\\a\\b.txt", name, std::size(name)));
    EXPECT_EQ(std::wstring(L"0000AB12.642.c:/a/b.txt"), name);
    EXPECT_TRUE(MakeSectionName(0xAB12, L"c:\\a\\b\\c\\d\\efg.txt", name, std::size(name)));
    EXPECT_FALSE(MakeSectionName(0xAB12, L"c:\\a\\b\\c\\d\\efgh.txt", name, std::size(name)));
}

TEST(TracePaths, MoveInside) {
    const struct {
        const wchar_t* path;
        std::size_t size;
        const wchar_t* moved; // null: refused
    } kCases[] = {
        {L"c:\\Log.txt", 40, L"c:\\Log.txt\\Log.txt"},
        {L"c:Log", 40, L"c:Log\\Log"},
        {L"c:\\a.b\\c", 40, L"c:\\a.b\\c\\c"},
        {L"c:\\Log.txt", 19, L"c:\\Log.txt\\Log.txt"},
        {L"c:\\Log.txt", 18, nullptr},
        {L"c:\\", 40, nullptr},
    };
    for (const auto& c : kCases) {
        wchar_t path[41] = {};
        std::wcscpy(path, c.path);
        EXPECT_EQ(c.moved != nullptr, MovePathInside(path, c.size)) << &c - kCases;
        EXPECT_EQ(std::wstring(c.moved ? c.moved : c.path), path) << &c - kCases;
    }
}

} // namespace
