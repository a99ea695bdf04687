#include "host/formats/LeftOut.h"

#include <algorithm>
#include <vector>

namespace host {

namespace {

// "2 audio streams", "its text stream"
void AddSideStreams(const ClipInfo& clip, OutputKind output, std::vector<std::string>& lost) {
    std::vector<std::string> kinds;
    for (const SideStream& side : clip.sideStreams) {
        if (output != OutputKind::Avi || side.header.empty()) {
            kinds.push_back(side.kind);
        }
    }
    std::sort(kinds.begin(), kinds.end());
    for (auto kind = kinds.begin(); kind != kinds.end();) {
        const auto next = std::upper_bound(kind, kinds.end(), *kind);
        const auto count = next - kind;
        lost.push_back(count == 1 ? "its " + *kind + " stream" : std::to_string(count) + " " + *kind + " streams");
        kind = next;
    }
}

} // namespace

std::string LeftOut(const ClipInfo& clip, OutputKind output) {
    std::vector<std::string> lost;
    if (output != OutputKind::None) {
        AddSideStreams(clip, output, lost);
    }
    const bool raw = output == OutputKind::Raw;
    const struct {
        bool lost;
        const char* what;
    } kWords[] = {
        {raw && clip.aspect && *clip.aspect != Rational{1, 1}, "the pixels' aspect ratio"},
        {raw && MayBeInterlaced(clip.scan), "that its lines are interlaced"},
        {output == OutputKind::Y4m && clip.scan == Scan::Interlaced, "that its lines are interlaced (the order of its "
                                                                     "fields is not told)"},
        {(raw || output == OutputKind::Avi) && clip.fullRange, "the full range of its luma"},
        {output != OutputKind::None && clip.UsesBt709() != IsHighDefinition(clip.height),
         clip.UsesBt709() ? "its colour matrix, BT.709" : "its colour matrix, BT.601"},
    };
    for (const auto& word : kWords) {
        if (word.lost) {
            lost.emplace_back(word.what);
        }
    }
    std::string text;
    for (const std::string& what : lost) {
        text += (text.empty() ? "" : ", ") + what;
    }
    return text;
}

} // namespace host
