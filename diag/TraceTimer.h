// The timer that writes what a trace writer has collected.
#pragma once

struct TraceWriter;

// Starts the writer's timer, which fires every 500 ms, and makes this module its owner. No timer when the platform
// refuses. Call with the writer's lock held.
void StartTraceTimer(TraceWriter& writer);

// Stops the timer when this module owns it; none of the module's code runs in the timer's thread afterwards. Call
// without the writer's lock; the loader's lock may be held. `lockIsLost` says that another thread holds the writer's
// lock for good: a callback that waits for it is then left behind.
void StopTraceTimer(TraceWriter& writer, bool lockIsLost);
