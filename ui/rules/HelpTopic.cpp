#include "ui/rules/HelpTopic.h"

#include "ui/rules/BoundedText.h"

namespace {

std::string_view Trimmed(std::string_view text) {
    constexpr std::string_view kAround = " \t\r\n\"";
    const std::size_t first = text.find_first_not_of(kAround);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(kAround) - first + 1);
}

} // namespace

bool IsTransformTopic(std::string_view name) {
    return name.find(" MF") != std::string_view::npos;
}

const char* HelpFileOf(bool transform) {
    return transform ? kTransformHelpFile : kFilterHelpFile;
}

bool WriteTopicFileName(std::string_view name, std::span<char> to) {
    return CTextWriter(to).AppendWithoutBlanks(name).Fits();
}

bool WriteOnlineAddress(std::string_view site, std::string_view name, bool transform, std::span<char> to) {
    return CTextWriter(to)
        .Append(site)
        .Append("v23")
        .Append(transform ? "/multimedia/transforms/" : "/multimedia/filters/")
        .AppendWithoutBlanks(name)
        .Append(".html")
        .Fits();
}

bool WritePath(std::string_view folder, std::string_view file, std::span<char> to) {
    const bool closed = folder.ends_with('\\') || folder.ends_with('/');
    return CTextWriter(to).Append(folder).Append(closed ? "" : "\\").Append(file).Fits();
}

// Kept: filters and transforms alike have their topics in the folder Filters. Test: Names.
bool WriteTopicPath(std::string_view helpFile, std::string_view name, unsigned number, std::span<char> to) {
    return CTextWriter(to)
        .Append(helpFile)
        .Append("::/Filters/")
        .AppendWithoutBlanks(name)
        .Append(number == kUserInterfaceTopic ? "_UI" : "")
        .Append(".htm")
        .Fits();
}

bool CHelpFolders::Next(std::string_view* folder) {
    while (!m_rest.empty()) {
        const std::size_t end = m_rest.find(';');
        *folder = Trimmed(m_rest.substr(0, end));
        m_rest = end == std::string_view::npos ? std::string_view() : m_rest.substr(end + 1);
        if (!folder->empty()) {
            return true;
        }
    }
    return false;
}
