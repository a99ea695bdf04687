#include "host/analysis/Advice.h"

#include "host/analysis/Format.h"

namespace host {

namespace {

// Which share of the combed frames the automatic mode may leave as it is before every frame had better be taken.
constexpr double kMostMissed = 0.01;

std::string RebuildSettings(const FieldOrder& order) {
    return std::string(" --method rebuild --keep ") + (order.BottomComesFirst() ? "bottom" : "top");
}

std::string AutoSettings(const Forecast& forecast) {
    return Format("--mode auto --sensitivity %g", forecast.sensitivity);
}

// Whether the automatic mode finds what has combs and takes nothing else for combed.
bool Separates(const Analysis& analysis) {
    const double combed = static_cast<double>(analysis.order.moving - analysis.order.Count(Fields::Progressive));
    return static_cast<double>(analysis.best.missed) <= kMostMissed * combed && analysis.best.mistaken == 0;
}

bool SaysInterlaced(Scan header) {
    return MayBeInterlaced(header) && header != Scan::Mixed;
}

const char* KindName(OutputKind kind) {
    constexpr const char* kNames[] = {"y4m", "avi", "raw", "none"}; // in the order of OutputKind
    return kNames[static_cast<std::size_t>(kind)];
}

struct Choice {
    const char* reason;
    std::string settings;
};

Choice ChooseMixed(const Analysis& analysis) {
    if (Separates(analysis)) {
        return {"Some of its frames have combs and some have none, and the detector tells them apart at this "
                "sensitivity.",
                AutoSettings(analysis.best) + RebuildSettings(analysis.order)};
    }
    return {"Some of its frames have combs and some have none, but in this format no sensitivity tells them apart "
            "(another --feed may: analyse the clip with it). Taking every frame leaves no combs.",
            "--mode all" + RebuildSettings(analysis.order)};
}

Choice ChooseUndecided(const Analysis& analysis) {
    if (FindSeparation(analysis.scores.frames)) {
        return {"How the fields follow each other is not to be seen, but some frames are clearly more combed than the "
                "others.",
                AutoSettings(analysis.best)};
    }
    if (SaysInterlaced(analysis.header)) {
        return {
            "Too little moves to tell, but the input's header says interlaced; where nothing moves, little is lost.",
            "--mode all --method merge"};
    }
    return {"Too little moves to tell; where nothing moves, there are no combs.", AutoSettings(analysis.best)};
}

Choice Choose(const Analysis& analysis) {
    switch (analysis.order.verdict) {
    case Verdict::Progressive:
        return {"It needs no deinterlacing.", "--mode off"};
    case Verdict::TopFirst:
    case Verdict::BottomFirst:
        return {"Whatever moves has combs. Rebuilding from one field leaves no double images, as merging would.",
                "--mode all" + RebuildSettings(analysis.order)};
    case Verdict::Telecined:
        return {"It is film with repeated fields. A program that matches fields can give the film's own pictures back; "
                "the transform can rebuild every frame from one field.",
                "--mode all" + RebuildSettings(analysis.order)};
    case Verdict::Mixed:
        return ChooseMixed(analysis);
    case Verdict::Undecided:
        break;
    }
    return ChooseUndecided(analysis);
}

} // namespace

Analysis Conclude(const ClipScores& scores, std::span<const FieldReading> readings, Scan header, Pixels feed,
                  double sensitivity) {
    Analysis analysis;
    analysis.scores = scores;
    analysis.order = FindFieldOrder(readings);
    analysis.header = header;
    analysis.feed = feed;
    analysis.given = ForecastAt(scores, analysis.order.frames, sensitivity);
    analysis.best = BestForecast(scores, analysis.order.frames);
    if (const auto found = FindSeparation(scores.frames)) {
        // Between two groups of counts is the best place, unless the fields say that it is not.
        const Forecast between = ForecastAt(scores, analysis.order.frames, found->sensitivity);
        if (between.missed <= analysis.best.missed && between.mistaken <= analysis.best.mistaken) {
            analysis.best = between;
        }
    }
    return analysis;
}

Advice Advise(const Analysis& analysis, const Command& command) {
    const Choice choice = Choose(analysis);
    return {choice.reason, DeinterlaceLine(command, OutputNameFor(command.input), choice.settings)};
}

std::string_view HeaderWord(Scan header) {
    constexpr std::string_view kWords[] = {
        "nothing",    "progressive", "interlaced, top field first", "interlaced, bottom field first",
        "interlaced", "mixed"}; // in the order of Scan
    return kWords[static_cast<std::size_t>(header)];
}

std::string SilentDetectorAdvice(const Command& command, Scan header, std::uint64_t frames, std::uint64_t called) {
    if (!SaysInterlaced(header) || called != 0 || command.options.mode) {
        return {};
    }
    const bool named = !command.output.empty();
    std::string settings = "--mode all --method rebuild";
    settings += command.options.to ? std::string(" --to ") + KindName(*command.options.to) : "";
    settings += named && command.output != "-" ? " --force" : "";
    const std::string output = named || command.options.to ? command.output : OutputNameFor(command.input);
    return "The input says interlaced, " + std::to_string(called) + " of " + std::to_string(frames) +
           (frames == 1 ? " frame was" : " frames were") + " called so; try\n  " +
           DeinterlaceLine(command, output, settings) + "\nor ask \"nmfvdeint analyse " + Quoted(command.input) +
           "\" which settings fit.\n";
}

} // namespace host
