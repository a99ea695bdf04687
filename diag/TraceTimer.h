// The timer that writes what a trace writer has collected.
#pragma once

struct TraceWriter;

// Starts the writer's timer, every 500 ms, and makes this module its owner. Without one when the platform refuses. Call
// with the writer's lock held.
void StartTraceTimer(TraceWriter& writer);

// Stops the timer when this module owns it; none of the module's code runs in the timer's thread afterwards. Call
// without the writer's lock; the loader's lock may be held. When another thread has the writer's lock and won't give it
// back, `lockIsLost`, a callback that waits for it is left to wait.
void StopTraceTimer(TraceWriter& writer, bool lockIsLost);
