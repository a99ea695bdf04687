// A frame in automatic mode: the quickest order of reading, deciding and writing that gives the result of the plain
// one, which is to search the input frame, move the hold on and then write the output frame.
#pragma once

#include "engine/detector/AutoHold.h"
#include "engine/detector/CombSearch.h"
#include "engine/pixels/FrameOutput.h"

// The first pass over a frame. Says whether the input frame is interlaced, and writes the output frame as `likely` has
// it unless it turns out to be interlaced and `decided` is false: then the output frame is to be written, and
// WriteFrame leaves it as if it had been called alone. `decided` says that the output is `likely` whatever comes out.
// The frames may overlap, or be one: the output frame is then written when all has been read.
bool DetectAndWriteFrame(const FramePair& frames, CombSearch search, const FramePlan& likely, bool decided,
                         Stores stores);

// Writes the output frame, deinterlaced or as it is, moves the hold on (as AdvanceHold) and says which of the two.
// `search` searches the input frame. `readPlan()` is asked for the FramePlan once, and only of a frame that is
// deinterlaced. The frames may overlap, or be one.
template <class ReadPlan>
bool WriteAutomaticFrame(const FramePair& frames, const CombSearch& search, const ReadPlan& readPlan, Stores stores,
                         std::int32_t holdFrames, std::int32_t& holdCounter) {
    const bool decided = HoldDecides(holdCounter);
    const FramePlan likely = decided ? readPlan() : FramePlan{};
    const bool interlaced = DetectAndWriteFrame(frames, search, likely, decided, stores);
    const bool deinterlaced = AdvanceHold(interlaced, holdFrames, holdCounter);
    if (deinterlaced && !decided) {
        WriteFrame(frames, readPlan(), stores);
    }
    return deinterlaced;
}
