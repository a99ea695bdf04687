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

    // The writer of TracePath, found or created by the first call that succeeds. Null when there is none, and after
    // Close. Callable from any thread.
    TraceWriter* Acquire();

    // Releases the writer for good. Called while the module is unloaded, when no other thread uses this object.
    void Close();

private:
    TraceWriter* FindOrCreate();

    TraceLock m_lock;
    wchar_t m_path[kTracePathSize] = {}; // the section's; TracePath may change
    CHandle m_section;
    std::atomic<TraceWriter*> m_writer{nullptr};
    std::atomic<bool> m_closed{false};
};
