// An analysis as text and as JSON.
#pragma once

#include "host/analysis/Advice.h"

#include <string>

namespace host {

// The closing lines of an analysis, the command line last.
std::string DescribeAnalysis(const Analysis& analysis, const Command& command);

// One JSON object in one line, with its line end.
std::string AnalysisJson(const Analysis& analysis, const Command& command);

// "sure", "fairly sure", "likely", "a guess"
const char* ConfidenceWord(double confidence);

} // namespace host
