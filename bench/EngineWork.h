// A work done by the engine alone, without the DLL around it.
#pragma once

#include "bench/Frames.h"
#include "bench/Works.h"
#include "engine/pixels/Stores.h"

// The frame driver's steps on the set's frame `index`, with the stores chosen here.
void DoWork(const FrameWork& work, const FrameSet& frames, std::size_t index, Stores stores);
