#include "host/analysis/Plot.h"

#include "host/analysis/Format.h"
#include "host/analysis/Report.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace host {

namespace {

constexpr int kWidth = 880;
constexpr int kLeft = 150; // of the plot and the strips
constexpr int kRight = 860;
constexpr int kTop = 64;
constexpr int kBottom = 284;
constexpr int kStripTop = 326;
constexpr int kStripStep = 30;
constexpr int kStripHeight = 18;
constexpr int kHeight = 470;
constexpr int kLegendEntry = 240;
constexpr double kLowest = 0.001; // ratios at the ends of the axis
constexpr double kHighest = 16;
constexpr std::size_t kMostColumns = 355;

constexpr const char* kInk = "#333";
constexpr const char* kCount = "#1f5c99";
constexpr const char* kThreshold = "#c0392b";
constexpr const char* kCalled = "#d9822b";
constexpr const char* kHold = "#f3d3a4";

struct FieldsLook {
    const char* color;
    const char* name; // for the legend
};
// In the order of Fields.
constexpr FieldsLook kFields[] = {{"#ececec", "nothing moves"},
                                  {"#7fb48a", "progressive"},
                                  {"#b3476b", "top first"},
                                  {"#5b5ea6", "bottom first"},
                                  {"#c9b037", "film"}};

std::string Escaped(const std::string& text) {
    std::string out;
    for (const char c : text) {
        out += c == '&' ? "&amp;" : c == '<' ? "&lt;" : c == '>' ? "&gt;" : std::string(1, c);
    }
    return out;
}

double HeightOf(double ratio) {
    const double place = std::log(std::clamp(ratio, kLowest, kHighest) / kLowest) / std::log(kHighest / kLowest);
    return kBottom - place * (kBottom - kTop);
}

std::string TextAt(double x, double y, const char* anchor, const std::string& text, const char* color = kInk) {
    return Format("<text x='%.1f' y='%.1f' text-anchor='%s' fill='%s'>", x, y, anchor, color) + Escaped(text) +
           "</text>\n";
}

std::string Rectangle(double x, double y, double width, double height, const char* color) {
    return Format("<rect x='%.1f' y='%.1f' width='%.1f' height='%.1f' fill='%s'/>\n", x, y, width, height, color);
}

// Groups of frames that are drawn as one column.
class CColumns {
public:
    explicit CColumns(std::size_t frames)
        : m_frames(std::max<std::size_t>(frames, 1))
        , m_count(std::min(m_frames, kMostColumns)) {}

    std::size_t Count() const { return m_count; }
    std::size_t Begin(std::size_t column) const { return column * m_frames / m_count; }
    double Left(std::size_t column) const { return At(static_cast<double>(Begin(column))); }
    double Width() const { return static_cast<double>(kRight - kLeft) / static_cast<double>(m_count); }
    double At(double frame) const { return kLeft + frame * (kRight - kLeft) / static_cast<double>(m_frames); }
    std::size_t Frames() const { return m_frames; }

private:
    std::size_t m_frames;
    std::size_t m_count;
};

std::string RatioAxis() {
    std::string svg;
    for (const double ratio : {0.001, 0.01, 0.1, 1.0, 10.0}) {
        const double y = HeightOf(ratio);
        svg += Format("<path d='M%d %.1fH%d' stroke='#e2e2e2'/>\n", kLeft, y, kRight);
        svg += TextAt(kLeft - 8, y + 4, "end", Format(ratio == kLowest ? "\xE2\x89\xA4 %g" : "%g", ratio));
    }
    const double middle = (kTop + kBottom) / 2.0;
    return svg + Format("<g transform='translate(%d %.0f) rotate(-90)'>", 88, middle) +
           TextAt(0, 0, "middle", "combed positions / threshold") + "</g>\n";
}

// A round number of frames, so that six to twelve marks fill the axis.
std::size_t MarkStep(std::size_t frames) {
    for (std::size_t unit = 1;; unit *= 10) {
        for (const std::size_t step : {unit, 2 * unit, 5 * unit}) {
            if (frames <= step * 12) {
                return step;
            }
        }
    }
}

std::string FrameAxis(const CColumns& columns) {
    std::string svg;
    for (std::size_t frame = 0; frame < columns.Frames(); frame += MarkStep(columns.Frames())) {
        const double x = columns.At(static_cast<double>(frame));
        svg += Format("<path d='M%.1f %dv5' stroke='%s'/>\n", x, kBottom, kInk);
        svg += TextAt(x, kBottom + 18, "middle", std::to_string(frame));
    }
    return svg + TextAt(kLeft - 8, kBottom + 18, "end", "frame") +
           Format("<path d='M%d %dV%dH%d' fill='none' stroke='%s'/>\n", kLeft, kTop, kBottom, kRight, kInk);
}

// Every column from its least to its greatest ratio, as one closed line.
std::string Counts(const ClipScores& scores, const CColumns& columns) {
    std::string highs;
    std::string lows;
    for (std::size_t i = 0; i < columns.Count(); ++i) {
        const std::size_t end = i + 1 < columns.Count() ? columns.Begin(i + 1) : scores.frames.size();
        const auto group = scores.frames.subspan(columns.Begin(i), end - columns.Begin(i));
        const auto [low, high] = std::minmax_element(
            group.begin(), group.end(), [](const FrameScore& a, const FrameScore& b) { return a.count < b.count; });
        const double x = columns.Left(i) + columns.Width() / 2;
        highs += Format("%.1f,%.1f ", x, HeightOf(high->Ratio()));
        lows.insert(0, Format("%.1f,%.1f ", x, HeightOf(low->Ratio())));
    }
    return Format("<polygon fill='%s' stroke='%s' stroke-width='1.8' stroke-linejoin='round' points='", kCount,
                  kCount) +
           highs + lows + "'/>\n";
}

// A line over the plot, and its entry in the legend above it, which ends at `right`.
std::string ThresholdLine(double sensitivity, const char* dashes, int right) {
    const std::string look = Format("stroke='%s' stroke-width='1.5' stroke-dasharray='%s'/>\n", kThreshold, dashes);
    return Format("<path d='M%d %.1fH%d' ", kLeft, HeightOf(sensitivity), kRight) + look +
           Format("<path d='M%d 44h32' ", right - kLegendEntry) + look +
           TextAt(right - kLegendEntry + 40, 48, "start", Format("threshold at sensitivity %g", sensitivity));
}

std::string ThresholdLines(const Analysis& analysis) {
    const double best = analysis.best.sensitivity;
    const std::string normal = best != 1 ? ThresholdLine(1, "6 4", kRight - kLegendEntry - 16) : "";
    return normal + ThresholdLine(best, "none", kRight);
}

// A strip whose columns have colours (null: none). Neighbours of one colour are one rectangle, and all rectangles of a
// colour one path, so that a strip that changes all the time stays short, too.
template <class ColorOf>
std::string Strip(int index, const char* name, const CColumns& columns, const ColorOf& colorOf) {
    const int y = kStripTop + index * kStripStep;
    std::map<std::string, std::string> paths; // by colour
    std::size_t begin = 0;
    for (std::size_t i = 1; i <= columns.Count(); ++i) {
        if (i < columns.Count() && colorOf(i) == colorOf(begin)) {
            continue;
        }
        const double right = i < columns.Count() ? columns.Left(i) : kRight;
        if (const char* const color = colorOf(begin)) {
            paths[color] +=
                Format("M%.1f %dH%.1fv%dH%.1fz", columns.Left(begin), y, right, kStripHeight, columns.Left(begin));
        }
        begin = i;
    }
    std::string svg =
        TextAt(kLeft - 8, y + 14, "end", name) + Rectangle(kLeft, y, kRight - kLeft, kStripHeight, kFields[0].color);
    for (const auto& [color, path] : paths) {
        svg.append("<path fill='").append(color).append("' d='").append(path).append("'/>\n");
    }
    return svg;
}

std::string Strips(const Analysis& analysis, const CColumns& columns) {
    CAutomatic automatic(analysis.scores, analysis.best.sensitivity);
    std::vector<CAutomatic::Step> steps;
    for (const FrameScore& score : analysis.scores.frames) {
        steps.push_back(automatic.Next(score.count));
    }
    const auto called = [&](std::size_t i) { return steps[columns.Begin(i)].called ? kCalled : nullptr; };
    const auto done = [&](std::size_t i) {
        const CAutomatic::Step& step = steps[columns.Begin(i)];
        return step.called ? kCalled : step.deinterlaced ? kHold : nullptr;
    };
    const auto fields = [&](std::size_t i) {
        const Fields f = analysis.order.frames[columns.Begin(i)];
        return f == Fields::Still ? nullptr : kFields[static_cast<std::size_t>(f)].color;
    };
    return Strip(0, "called interlaced", columns, called) + Strip(1, "with the hold", columns, done) +
           Strip(2, "field order", columns, fields);
}

std::string Legend() {
    constexpr int kEntry = 138;
    std::string svg;
    double x = kLeft;
    const double y = kStripTop + 3 * kStripStep + 12;
    for (const FieldsLook& look : kFields) {
        svg += Rectangle(x, y, 14, 14, look.color) + TextAt(x + 20, y + 12, "start", look.name);
        x += kEntry;
    }
    return svg;
}

} // namespace

std::string PlotSvg(const Analysis& analysis, const std::string& title) {
    const CColumns columns(analysis.scores.frames.size());
    const FieldOrder& order = analysis.order;
    const std::string verdict = Format("%s%s%s, %s frames of %dx%d", std::string(NameOf(order.verdict)).c_str(),
                                       order.verdict == Verdict::Undecided ? "" : ", ",
                                       order.verdict == Verdict::Undecided ? "" : ConfidenceWord(order.confidence),
                                       TraitsOf(analysis.feed).name, analysis.scores.width, analysis.scores.height);
    std::string svg = Format("<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 %d %d' width='%d' height='%d' "
                             "font-family='sans-serif' font-size='13'>\n",
                             kWidth, kHeight, kWidth, kHeight);
    svg += "<title>" + Escaped(title) + "</title>\n" + Rectangle(0, 0, kWidth, kHeight, "#fff");
    svg += "<g font-size='17' font-weight='bold'>" + TextAt(20, 28, "start", title) + "</g>\n";
    svg += TextAt(20, 48, "start", verdict);
    svg += RatioAxis() + FrameAxis(columns);
    if (!analysis.scores.frames.empty()) {
        svg += Counts(analysis.scores, columns) + ThresholdLines(analysis) + Strips(analysis, columns);
    }
    return svg + Legend() + "</svg>\n";
}

} // namespace host
