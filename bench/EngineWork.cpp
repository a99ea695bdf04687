#include "bench/EngineWork.h"

#include "engine/detector/AutomaticFrame.h"
#include "engine/detector/InterlaceDetector.h"

constexpr std::int32_t kHold = 150; // frames

void DoWork(const FrameWork& work, const FrameFormat& format, const std::uint8_t* input, std::uint8_t* output,
            Stores stores) {
    const FrameShape shape{format.width, format.height, format.bits, format.Stride(), false};
    const FramePair pair{shape, input, output};
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
