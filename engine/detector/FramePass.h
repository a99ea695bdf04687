// A whole frame at once: the quickest order of reading, deciding and writing that gives the result of the plain one.
#pragma once

#include "engine/detector/CombSearch.h"
#include "engine/pixels/FrameOutput.h"

// Writes the output frame. The frames may overlap, or be one.
void WriteFrame(const FramePair& frames, const FramePlan& plan, Stores stores);

// Says whether the input frame is interlaced, and writes the output frame as `likely` has it unless it turns out to be
// interlaced and `decided` is false: then the output frame is to be written, and WriteFrame leaves it as if it had been
// called alone. `decided` says that the output is `likely` whatever comes out. The frames may overlap, or be one: the
// output frame is then written when all has been read.
bool DetectAndWriteFrame(const FramePair& frames, CombSearch search, const FramePlan& likely, bool decided,
                         Stores stores);
