#include "bench/EngineWork.h"

#include "engine/detector/AutomaticFrame.h"
#include "engine/detector/InterlaceDetector.h"

constexpr std::int32_t kHold = 150; // frames

void DoWork(const FrameWork& work, const FrameSet& frames, std::size_t index, Stores stores) {
    const FrameFormat& format = frames.Format();
    const FrameShape shape{format.width, format.height, format.bits, format.Stride(), false};
    const FramePair pair{shape, frames.Input(index), frames.Output(index)};
    const FramePlan plan{WholeFrame(shape), false, true, work.merge, true};
    if (!work.automatic) {
        return WriteFrame(pair, work.enabled ? plan : FramePlan{}, stores);
    }
    const CombSearch search(pair.input, shape, FrameComber(shape.width, shape.bits, nullptr),
                            InterlaceThreshold(shape.width, shape.height, 1.0));
    std::int32_t hold = work.holdRuns ? kHold : 0;
    WriteAutomaticFrame(
        pair, search, [&] { return plan; }, stores, kHold, hold);
}
