#include "host/analysis/FieldOrder.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace host {

namespace {

constexpr std::size_t kReach = 4;      // frames to either side that a frame's class is taken from
constexpr double kLeastContrast = 0.1; // of the best to the worst fit
constexpr double kLeastCertainty = 1;
constexpr double kSureCertainty = 5; // tells without contrast
constexpr int kCycle = 5;            // frames that 3:2 pulldown makes of four pictures
constexpr double kRepeated = 0.5;    // a field that changed by less than this share of the other is a repeated one
constexpr std::size_t kLeastRepeats = 4;
constexpr double kOneKind = 0.9; // share of one class from which on a clip is called so
// Frames of another class in a row that make a clip mixed: when they are many in all, and whatever their share. Fewer
// in a row are errors: field order does not change for single frames.
constexpr std::uint64_t kLeastRun = 4;
constexpr std::uint64_t kLongRun = 12;
constexpr double kLeastShare = 0.6; // of the leading class without such a run

// In true video the fields of neighbouring frames are as near in time as a frame's own; pictures taken whole have
// fields that fit without any zigzag, their own ones or, after pulldown, those of two frames.
enum class Kind { None, Progressive, TopFirst, BottomFirst, TopShifted, BottomShifted };

bool TellsAnything(const FieldReading& reading) {
    const auto [low, high] = std::minmax({reading.own, reading.topLater, reading.bottomLater});
    const bool contrast = high - low >= kLeastContrast * high && reading.certainty >= kLeastCertainty;
    return high > low && (contrast || reading.certainty >= kSureCertainty);
}

// Where a frame's own fields stand, taken that the order is known: -1 when they fit best (progressive), 1 when the
// fields of neighbouring frames do (pulldown), 0 when both fit as well (video), more when they fit worst of all, which
// no order explains.
double PlaceOf(const FieldReading& reading, bool topFirst) {
    const double near = topFirst ? reading.topLater : reading.bottomLater;
    const double far = topFirst ? reading.bottomLater : reading.topLater;
    const double range = far - std::min(reading.own, near);
    return range > 0 ? std::clamp((reading.own - near) / range, -1.0, 2.0) : 2.0;
}

Kind KindAt(double place, bool topFirst) {
    if (place < -0.75) { // coding a frame as a whole, too, makes its own fields fit a little better
        return Kind::Progressive;
    }
    if (place > 1.1) {
        return Kind::None;
    }
    if (place > 0.25) {
        return topFirst ? Kind::TopShifted : Kind::BottomShifted;
    }
    return topFirst ? Kind::TopFirst : Kind::BottomFirst;
}

double Median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

// The kind of a frame from the readings around it that tell anything. Medians: one frame at a cut, or one whose motion
// slowed down, does not count against its scene, and where two kinds meet there is none between them.
Kind KindOf(const std::vector<const FieldReading*>& readings) {
    std::vector<double> leads; // how much better the top field of a frame fits as the later one
    for (const FieldReading* reading : readings) {
        leads.push_back((reading->bottomLater - reading->topLater) /
                        std::max({reading->own, reading->topLater, reading->bottomLater}));
    }
    const bool topFirst = Median(leads) >= 0;
    std::vector<double> places;
    for (const FieldReading* reading : readings) {
        places.push_back(PlaceOf(*reading, topFirst));
    }
    return KindAt(Median(places), topFirst);
}

struct Repeat {
    std::size_t frame;
    bool top;
};

std::vector<Repeat> FindRepeats(std::span<const FieldReading> readings) {
    std::vector<Repeat> repeats;
    for (std::size_t i = 0; i < readings.size(); ++i) {
        const FieldReading& reading = readings[i];
        if (reading.topChange < kRepeated * reading.bottomChange) {
            repeats.push_back({i, true});
        } else if (reading.bottomChange < kRepeated * reading.topChange) {
            repeats.push_back({i, false});
        }
    }
    return repeats;
}

// 3:2 pulldown repeats a top field and a bottom field in every five frames. Two of each in step are no chance.
bool KeepsCycle(const Repeat* repeats) {
    const auto inStep = [](const Repeat& a, const Repeat& b) {
        return a.top == b.top && b.frame - a.frame == std::size_t{kCycle};
    };
    return repeats[0].top != repeats[1].top && inStep(repeats[0], repeats[2]) && inStep(repeats[1], repeats[3]);
}

// Which frames belong to a run of the cycle.
std::vector<bool> FindPulldown(std::span<const FieldReading> readings) {
    const std::vector<Repeat> repeats = FindRepeats(readings);
    std::vector<bool> pulldown(readings.size());
    for (std::size_t i = 0; i + kLeastRepeats <= repeats.size(); ++i) {
        if (KeepsCycle(&repeats[i])) {
            const std::size_t begin = repeats[i].frame - std::min<std::size_t>(repeats[i].frame, kCycle - 1);
            const std::size_t end = std::min(repeats[i + 3].frame + kCycle, readings.size());
            std::fill(pulldown.begin() + static_cast<std::ptrdiff_t>(begin),
                      pulldown.begin() + static_cast<std::ptrdiff_t>(end), true);
        }
    }
    return pulldown;
}

// The kinds of all frames outside pulldown.
std::vector<Kind> FindKinds(std::span<const FieldReading> readings, const std::vector<bool>& pulldown) {
    std::vector<Kind> kinds(readings.size(), Kind::None);
    const auto tells = [&](std::size_t i) { return !pulldown[i] && TellsAnything(readings[i]); };
    for (std::size_t i = 0; i < readings.size(); ++i) {
        std::vector<const FieldReading*> around;
        for (std::size_t j = i - std::min(i, kReach); j <= std::min(i + kReach, readings.size() - 1); ++j) {
            if (tells(j)) {
                around.push_back(&readings[j]);
            }
        }
        if (tells(i)) {
            kinds[i] = KindOf(around);
        }
    }
    return kinds;
}

// Pulldown of other cycles (24 to 25 pictures a second) shows in long runs of shifted fields, with whole pictures
// between them and hardly any video. Where a small thing moves in video, some fields look shifted by chance.
bool HasLongCycle(const std::vector<Kind>& kinds) {
    const auto count = [&](Kind top, Kind bottom) {
        return std::count(kinds.begin(), kinds.end(), top) + std::count(kinds.begin(), kinds.end(), bottom);
    };
    const auto shifted = count(Kind::TopShifted, Kind::BottomShifted);
    const auto video = count(Kind::TopFirst, Kind::BottomFirst);
    const auto known = shifted + video + std::count(kinds.begin(), kinds.end(), Kind::Progressive);
    return shifted > 0 && shifted * 4 >= known && video * 4 <= known;
}

Fields FieldsOf(Kind kind, bool longCycle) {
    switch (kind) {
    case Kind::None:
        break;
    case Kind::Progressive:
        return longCycle ? Fields::Film : Fields::Progressive;
    case Kind::TopFirst:
        return Fields::TopFirst;
    case Kind::BottomFirst:
        return Fields::BottomFirst;
    case Kind::TopShifted:
        return longCycle ? Fields::Film : Fields::TopFirst;
    case Kind::BottomShifted:
        return longCycle ? Fields::Film : Fields::BottomFirst;
    }
    return Fields::Still;
}

struct Class {
    Fields fields;
    Verdict verdict;
    std::uint64_t frames = 0;
    std::uint64_t longestRun = 0; // still frames don't end a run
};

std::array<Class, 4> CountClasses(const std::vector<Fields>& frames) {
    std::array<Class, 4> classes = {{{Fields::Progressive, Verdict::Progressive},
                                     {Fields::TopFirst, Verdict::TopFirst},
                                     {Fields::BottomFirst, Verdict::BottomFirst},
                                     {Fields::Film, Verdict::Telecined}}};
    for (Class& c : classes) {
        std::uint64_t length = 0;
        for (const Fields fields : frames) {
            const bool same = fields == c.fields;
            c.frames += same ? 1 : 0;
            length = same ? length + 1 : fields == Fields::Still ? length : 0;
            c.longestRun = std::max(c.longestRun, length);
        }
    }
    std::sort(classes.begin(), classes.end(), [](const Class& a, const Class& b) { return a.frames > b.frames; });
    return classes;
}

// How far the readings of the frames that told can be trusted, 0 to 1.
double MeanCertainty(std::span<const FieldReading> readings, const std::vector<Fields>& frames, std::uint64_t moving) {
    double sum = 0;
    for (std::size_t i = 0; i < frames.size(); ++i) {
        sum += frames[i] != Fields::Still ? 1 - std::exp(-readings[i].certainty) : 0;
    }
    return moving != 0 ? sum / static_cast<double>(moving) : 0;
}

void Judge(std::span<const FieldReading> readings, FieldOrder& order) {
    const std::array<Class, 4> classes = CountClasses(order.frames);
    for (const Class& c : classes) {
        order.moving += c.frames;
    }
    if (order.moving < 3) {
        return;
    }
    const double share = static_cast<double>(classes[0].frames) / static_cast<double>(order.moving);
    const std::uint64_t run = classes[1].longestRun;
    const bool mixed = run >= kLongRun || (run >= kLeastRun && share < kOneKind);
    if (!mixed && share < kLeastShare) {
        return;
    }
    order.verdict = mixed ? Verdict::Mixed : classes[0].verdict;
    const double evidence = 1 - std::exp(-static_cast<double>(order.moving) / 4);
    const double clear = mixed ? std::min(1.0, 0.5 + static_cast<double>(run) / 24) : share;
    order.confidence = clear * evidence * MeanCertainty(readings, order.frames, order.moving);
}

} // namespace

bool FieldOrder::BottomComesFirst() const {
    return Count(Fields::BottomFirst) > Count(Fields::TopFirst);
}

std::uint64_t FieldOrder::Count(Fields fields) const {
    return static_cast<std::uint64_t>(std::count(frames.begin(), frames.end(), fields));
}

FieldOrder FindFieldOrder(std::span<const FieldReading> readings) {
    const std::vector<bool> pulldown = FindPulldown(readings);
    const std::vector<Kind> kinds = FindKinds(readings, pulldown);
    const bool longCycle = HasLongCycle(kinds);
    FieldOrder order;
    order.frames.reserve(readings.size());
    for (std::size_t i = 0; i < readings.size(); ++i) {
        const bool film = pulldown[i] && readings[i].moving > 0;
        order.frames.push_back(film ? Fields::Film : FieldsOf(kinds[i], longCycle));
    }
    Judge(readings, order);
    return order;
}

std::string_view NameOf(Verdict verdict) {
    constexpr std::string_view kNames[] = {"progressive", "top-field-first", "bottom-field-first",
                                           "telecined",   "mixed",           "undecided"};
    return kNames[static_cast<std::size_t>(verdict)];
}

} // namespace host
