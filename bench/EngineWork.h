// A work done by the engine alone, without the DLL around it.
#pragma once

#include "bench/Frames.h"
#include "bench/Works.h"
#include "engine/pixels/Stores.h"

// The frame driver's steps on one frame, with the stores chosen here.
void DoWork(const FrameWork& work, const FrameFormat& format, const std::uint8_t* input, std::uint8_t* output,
            Stores stores);
