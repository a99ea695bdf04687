// Names of help topics: what their files, paths and addresses are called. Platform-free.
//
// Writers keep to the buffer, leave it terminated and return false when the text doesn't fit.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

inline constexpr std::size_t kLongestTopicName = 260;

// The topic that the pages show: how the component is set up on screen. Its file name ends in "_UI".
inline constexpr unsigned kUserInterfaceTopic = 1;

inline constexpr char kTransformHelpFile[] = "NxTransforms.chm";
inline constexpr char kFilterHelpFile[] = "nxfilters.chm";

// What a topic belongs to: a name with " MF" in it is a transform's, any other a filter's.
bool IsTransformTopic(std::string_view name);

// The help file in which the topic is.
const char* HelpFileOf(bool transform);

// The topic's name as part of a file name: without blanks.
bool WriteTopicFileName(std::string_view name, std::span<char> to);

// Where the topic is described on the help site.
bool WriteOnlineAddress(std::string_view site, std::string_view name, bool transform, std::span<char> to);

// `file` in `folder`, which may or may not end in a backslash.
bool WritePath(std::string_view folder, std::string_view file, std::span<char> to);

// The topic inside a help file, as the help control wants it: "FILE::/Filters/TOPIC.htm".
bool WriteTopicPath(std::string_view helpFile, std::string_view name, unsigned number, std::span<char> to);

// Walks the folders of a list "C:\Help;D:\More Help". Blanks and quotation marks around a folder are not part of it;
// empty entries are left out.
class CHelpFolders {
public:
    explicit CHelpFolders(std::string_view list)
        : m_rest(list) {}

    // False at the end of the list.
    bool Next(std::string_view* folder);

private:
    std::string_view m_rest;
};
