// The rules behind the settings and the pages: lists of segments, edges, texts and start points.
#include "settings/rules/RegionClamp.h"
#include "settings/rules/SegmentList.h"
#include "tests/fuzz/Fuzz.h"
#include "ui/rules/EdgeCheck.h"
#include "ui/rules/HelpTopic.h"
#include "ui/rules/SegmentRecords.h"
#include "ui/rules/SegmentText.h"
#include "ui/rules/SensitivityText.h"

#include <cmath>

namespace {

// A list against a vector of the data of its segments, each a number of its own.
using Model = std::vector<std::uint32_t>;

template <typename List>
void ExpectList(const Model& model, const List& list) {
    const auto size = static_cast<std::int32_t>(model.size());
    Require(list.Count() == size && !list.Find(-1) && !list.Find(size), "as many as in the vector");
    const auto* segment = list.Find(0);
    for (std::int32_t i = 0; i < size; ++i, segment = segment->next) {
        Require(segment && segment == list.Find(i) && segment->index == i, "every place is found");
        Require(segment->segmentData == model[std::size_t(i)], "each segment is in its place");
    }
    Require(!segment, "the list ends");
}

template <typename List, typename Record>
void FollowAVector(FuzzInput& input, bool (List::*add)(std::int32_t, const Record&)) {
    List list;
    Model model;
    std::uint32_t appends = 0;
    for (std::uint32_t turn = 1; turn <= 100 && !input.IsEmpty(); ++turn) {
        const std::int32_t index = input.Edge(list.Count());
        const bool within = index >= 0 && index < list.Count();
        switch (input.Below(4)) {
        case 0:
            Require(list.Remove(index) == within, "what is there can be removed");
            model.erase(model.begin() + (within ? index : 0), model.begin() + (within ? index + 1 : 0));
            break;
        case 1:
            if constexpr (requires { list.ExchangeWithNext(index); }) {
                const bool pair = within && index + 1 < list.Count();
                Require(list.ExchangeWithNext(index) == pair, "two neighbours change places");
                if (pair) {
                    std::swap(model[std::size_t(index)], model[std::size_t(index) + 1]);
                }
                break;
            }
            [[fallthrough]];
        default:
            Record record;
            record.index = 4711; // the list gives its own, and its links
            record.next = &record;
            record.segmentData = turn;
            appends += !within;
            Require((list.*add)(index, record), "there is memory");
            model.insert(within ? model.begin() + index : model.end(), turn);
        }
        ExpectList(model, list);
    }
    if constexpr (requires { list.Appends(); }) {
        Require(list.Appends() == appends, "appends are counted");
    }
}

void RunSegments(std::span<const std::uint8_t> bytes) {
    FuzzInput input(bytes);
    input.Flag() ? FollowAVector<SegmentList, SegmentRecord>(input, &SegmentList::Add)
                 : FollowAVector<PageSegmentList, PageSegment>(input, &PageSegmentList::Insert);
}

// The rules of edges: any numbers.
void RunEdges(std::span<const std::uint8_t> bytes) {
    FuzzInput input(bytes);
    const auto unsignedEdge = [&] { return static_cast<std::uint32_t>(input.Edge(100)); };
    const std::int32_t value = input.Edge(100), size = input.Edge(100);
    const std::uint32_t own = unsignedEdge(), opposite = unsignedEdge();
    Require(value >= 0 || ClampRoiLeft(value, opposite) == 0, "no negative left edge");
    Require(value >= 0 || ClampRoiTop(value, own, opposite) == 0, "no negative top edge");
    Require(std::uint32_t(value) <= opposite || ClampRoiRight(value, opposite, size) <= size, "a right edge inside");
    (void)ClampRoiBottom(value, opposite, own, size);
    const ProtectedEdges edges = ClampProtectedEdges(value, input.Edge(100), size);
    Require(edges.farEdge <= size, "a far edge inside");

    const PageRectangle rectangle{input.Edge(100), input.Edge(100), input.Edge(100), input.Edge(100)};
    const Edge edge = static_cast<Edge>(input.Below(4));
    const EdgeLimits spin = SpinLimits(value, size), typed = EditLimits(value, size);
    Require(spin.width <= 32767 && spin.height <= 32767, "a spin button's limits");
    std::int64_t corrected = 0;
    (void)CheckEdge(rectangle, edge, typed, input.Edge(100), &corrected);
}

// A buffer of any size holds what is written to it, and its end.
template <typename Write>
void ExpectTerminated(std::size_t room, const Write& write) {
    FuzzBytes buffer(room, 0xCC);
    (void)write(std::span<char>(reinterpret_cast<char*>(buffer.data()), room));
    Require(std::ranges::find(buffer, 0) != buffer.end(), "a text ends inside its buffer");
}

void RunTexts(std::span<const std::uint8_t> bytes) {
    FuzzInput input(bytes);
    const auto room = static_cast<std::size_t>(1 + input.Below(60));
    const unsigned number = input.Any<unsigned>();
    PageSegment segment;
    segment.startTime = {input.Any<unsigned>(), input.Any<unsigned>(), input.Any<unsigned>(), input.Any<unsigned>()};
    segment.startFrame = input.Any<std::int64_t>();
    segment.operation = input.Below(4);
    segment.pattern = {input.Flag(), input.Any<unsigned>(), input.Any<unsigned>(), input.Any<unsigned>()};
    auto rate = input.Any<double>();
    const std::string first = input.Text(), second = input.Text();

    char line[kSegmentTextSize] = {};
    FormatSegment(segment, input.Flag(), line);
    Require(std::strchr(line, ')'), "a segment's line is whole");
    Require(IsStartTime(ClampStartTime(segment.startTime)), "a start time");
    Require(IsStartTime(TimeOfStartFrame(segment.startFrame, rate)), "a start time of a frame");
    const std::int64_t frame = FrameOfStartTime(segment.startTime, rate);
    Require(frame >= 0 && frame <= kLastStartFrame, "a start frame of a time");

    double sensitivity = -1;
    const bool valid = ParseSensitivity(first.c_str(), &sensitivity);
    Require(valid ? sensitivity >= kLowestSensitivity && sensitivity <= kHighestSensitivity : sensitivity == -1,
            "a sensitivity");
    SensitivityText text;
    FormatSensitivity(valid ? sensitivity : rate, text);
    double again = -1;
    Require(!valid || (ParseSensitivity(text, &again) && std::abs(again - sensitivity) < 0.00051), "and back");

    ExpectTerminated(room, [&](auto to) { return WriteTopicFileName(first, to); });
    ExpectTerminated(room, [&](auto to) { return WriteOnlineAddress(first, second, IsTransformTopic(second), to); });
    ExpectTerminated(room, [&](auto to) { return WritePath(first, second, to); });
    ExpectTerminated(room, [&](auto to) { return WriteTopicPath(first, second, number, to); });
    CHelpFolders folders(first);
    for (std::string_view folder; folders.Next(&folder);) {
        Require(!folder.empty(), "an entry of a list is not empty");
    }
}

std::vector<FuzzBytes> Seeds() {
    std::vector<FuzzBytes> seeds(1);
    for (const char* text :
         {"1.234", "0.001", " C:\\h; \"D:\\More Help\\\" ;;", "Nerin MF Video", "7.9999", "8.", "..5"}) {
        FuzzBytes& seed = seeds.emplace_back(55, std::uint8_t{1}); // the numbers in front of the texts
        seed.insert(seed.end(), text, text + std::strlen(text));
    }
    for (std::uint8_t step = 3; step < 12; ++step) {
        FuzzBytes& seed = seeds.emplace_back(120);
        std::generate(seed.begin(), seed.end(), [&, at = 0u]() mutable { return std::uint8_t(at += step); });
    }
    return seeds;
}

} // namespace

std::vector<FuzzTarget> RuleTargets() {
    return {{"segments", &RunSegments, &Seeds}, {"edges", &RunEdges, &Seeds}, {"texts", &RunTexts, &Seeds}};
}
