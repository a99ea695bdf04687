#include "host/analysis/Report.h"

#include "host/analysis/Format.h"
#include "host/command/Json.h"

namespace host {

namespace {

using Count = unsigned long long;

const char* Sentence(Verdict verdict) {
    constexpr const char* kTexts[] = {"progressive",
                                      "interlaced, top field first",
                                      "interlaced, bottom field first",
                                      "telecined (film with repeated fields)",
                                      "mixed",
                                      "undecided"}; // in the order of Verdict
    return kTexts[static_cast<std::size_t>(verdict)];
}

// "of 250 frames, 240 show motion: 30 progressive, 210 top field first"
std::string DescribeFrames(const FieldOrder& order) {
    std::string text = Format("of %llu frames, %llu show motion", Count{order.frames.size()}, Count{order.moving});
    constexpr struct {
        Fields fields;
        const char* name;
    } kRows[] = {{Fields::Progressive, "progressive"},
                 {Fields::TopFirst, "top field first"},
                 {Fields::BottomFirst, "bottom field first"},
                 {Fields::Film, "film"}};
    const char* mark = ": ";
    for (const auto& row : kRows) {
        if (const std::uint64_t count = order.Count(row.fields)) {
            text += Format("%s%llu %s", mark, Count{count}, row.name);
            mark = ", ";
        }
    }
    return text;
}

std::string DescribeForecast(const Forecast& forecast, std::size_t frames) {
    return Format("  --sensitivity %-5g calls %llu of %llu frames interlaced, and with its hold deinterlaces %llu.\n",
                  forecast.sensitivity, Count{forecast.called}, Count{frames}, Count{forecast.deinterlaced});
}

} // namespace

const char* ConfidenceWord(double confidence) {
    return confidence >= 0.9 ? "sure" : confidence >= 0.7 ? "fairly sure" : confidence >= 0.4 ? "likely" : "a guess";
}

std::string DescribeAnalysis(const Analysis& analysis, const Command& command) {
    const FieldOrder& order = analysis.order;
    const Advice advice = Advise(analysis, command);
    std::string text = std::string("\nFields over time: ") + Sentence(order.verdict);
    if (order.verdict != Verdict::Undecided) {
        text += Format(", %s (%.2f)", ConfidenceWord(order.confidence), order.confidence);
    }
    text += "; " + DescribeFrames(order) + ".\n";
    text += "The input's header says " + std::string(HeaderWord(analysis.header)) +
            (analysis.header == Scan::Unknown ? " of it.\n" : ".\n");
    text += Format("In %s frames the automatic mode at\n", TraitsOf(analysis.feed).name);
    text += DescribeForecast(analysis.given, order.frames.size());
    if (analysis.best.sensitivity != analysis.given.sensitivity) {
        text += DescribeForecast(analysis.best, order.frames.size());
    }
    return text + advice.reason + "\n\n  " + advice.command + "\n";
}

std::string AnalysisJson(const Analysis& analysis, const Command& command) {
    const FieldOrder& order = analysis.order;
    CJsonObject json;
    json.Text("input", command.input);
    json.Text("verdict", NameOf(order.verdict));
    json.Number("confidence", order.confidence);
    json.Number("sensitivity", analysis.best.sensitivity);
    json.Text("command", Advise(analysis, command).command);
    json.Text("header", HeaderWord(analysis.header));
    json.Text("format", TraitsOf(analysis.feed).name);
    json.Whole("width", static_cast<std::uint64_t>(analysis.scores.width));
    json.Whole("height", static_cast<std::uint64_t>(analysis.scores.height));
    json.Whole("frames", order.frames.size());
    json.Whole("moving", order.moving);
    json.Whole("progressive", order.Count(Fields::Progressive));
    json.Whole("topFieldFirst", order.Count(Fields::TopFirst));
    json.Whole("bottomFieldFirst", order.Count(Fields::BottomFirst));
    json.Whole("film", order.Count(Fields::Film));
    json.Whole("called", analysis.best.called);
    json.Whole("deinterlaced", analysis.best.deinterlaced);
    json.Number("givenSensitivity", analysis.given.sensitivity);
    json.Whole("givenCalled", analysis.given.called);
    json.Whole("givenDeinterlaced", analysis.given.deinterlaced);
    return json.Line();
}

} // namespace host
