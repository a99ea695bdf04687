// Names of help topics and the walk through a list of folders.
#include "ui/rules/HelpTopic.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

constexpr char kSite[] = "https://help.test/";

constexpr struct {
    const char* name;
    bool transform;
    const char *online, *topic; // number 1 in the file "f"
} kNames[] = {
    {"Nerin MF Video Deinterlace Transform", true,
     "https://help.test/v23/multimedia/transforms/NerinMFVideoDeinterlaceTransform.html",
     "f::/Filters/NerinMFVideoDeinterlaceTransform_UI.htm"},
    {"MF Grabber", false, "https://help.test/v23/multimedia/filters/MFGrabber.html", "f::/Filters/MFGrabber_UI.htm"},
};

TEST(HelpTopic, Names) {
    for (const auto& row : kNames) {
        SCOPED_TRACE(row.name);
        char text[128];
        EXPECT_EQ(row.transform, IsTransformTopic(row.name));
        EXPECT_TRUE(WriteOnlineAddress(kSite, row.name, row.transform, text));
        EXPECT_STREQ(row.online, text);
        EXPECT_TRUE(WriteTopicPath("f", row.name, kUserInterfaceTopic, text));
        EXPECT_STREQ(row.topic, text);
    }
    char text[32];
    EXPECT_TRUE(WriteTopicPath("f", "A B", 2, text));
    EXPECT_STREQ("f::/Filters/AB.htm", text);
    EXPECT_TRUE(WritePath("C:\\h\\", "x", text));
    EXPECT_STREQ("C:\\h\\x", text);
}

// A buffer of every size: what fits is whole, what doesn't is cut, terminated and reported.
TEST(HelpTopic, WritersKeepToTheBuffer) {
    const std::string whole = "folder\\file";
    for (std::size_t size = 1; size <= whole.size() + 2; ++size) {
        std::vector<char> text(size, '#'); // sanitizers see a byte too many
        EXPECT_EQ(size > whole.size(), WritePath("folder", "file", text));
        EXPECT_EQ(whole.substr(0, size - 1), text.data());
    }
}

TEST(HelpTopic, WalksAnyList) {
    const std::string longName(100'000, 'x');
    const std::pair<std::string, std::vector<std::string>> rows[] = {
        {"", {}},
        {std::string(70'000, ';'), {}},
        {" ; \t;\"\"", {}},
        {"a", {"a"}},
        {";C:\\One;; \"D:\\Two Words\" ;", {"C:\\One", "D:\\Two Words"}},
        {longName + ";b", {longName, "b"}},
    };
    for (const auto& [list, expected] : rows) {
        CHelpFolders walk(list);
        std::vector<std::string> folders;
        for (std::string_view folder; walk.Next(&folder);) {
            folders.emplace_back(folder);
        }
        EXPECT_EQ(expected, folders);
    }
}

} // namespace
