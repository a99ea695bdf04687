// A module's hold on the trace writer of its process.
#pragma once

#include "base/Handles.h"
#include "diag/Trace.h"
#include "diag/TraceLock.h"

#include <atomic>

struct TraceWriter;

// One static object per module.
class TraceWriterRef {
public:
    TraceWriterRef() = default;
    TraceWriterRef(const TraceWriterRef&) = delete;
    TraceWriterRef& operator=(const TraceWriterRef&) = delete;
    ~TraceWriterRef() { Close(); }

    // The writer of TracePath, found or made by the first call that succeeds. Null when there is none to be had, and
    // after Close. From any thread.
    TraceWriter* Acquire();

    // Lets the writer go, for good. While the module is unloaded, so no other thread uses this object.
    void Close();

private:
    TraceWriter* FindOrCreate();

    TraceLock m_lock;
    wchar_t m_path[kTracePathSize] = {}; // the section's; TracePath may change
    CHandle m_section;
    std::atomic<TraceWriter*> m_writer{nullptr};
    std::atomic<bool> m_closed{false};
};
