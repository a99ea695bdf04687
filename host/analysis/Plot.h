// A picture of an analysis.
#pragma once

#include "host/analysis/Advice.h"

#include <string>

namespace host {

// An SVG picture: the detector's count against its threshold over the frames, and below it strips of what it calls
// interlaced, what the hold adds and how the fields follow each other, at the best sensitivity. At most some hundred
// columns, each of which stands for as many frames as there must be.
std::string PlotSvg(const Analysis& analysis, const std::string& title);

} // namespace host
