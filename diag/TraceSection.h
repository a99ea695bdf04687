// The piece of shared memory through which the modules of one process find their common trace writer.
#pragma once

#include "base/Handles.h"

#include <atomic>
#include <cstdint>

#include <windows.h>

struct TraceWriter;

// The section's contents, new ones all zero.
struct TraceSection {
    std::atomic<TraceWriter*> writer; // null while there is none
    std::atomic<std::int32_t> spin;   // threads that have the section's lock or try to
    std::uint32_t unused;
};
static_assert(sizeof(TraceSection) == 16);
static_assert(std::atomic<TraceWriter*>::is_always_lock_free && std::atomic<std::int32_t>::is_always_lock_free);

// Creates the section for a trace file's path in this process, or opens the one that another module created. Empty when
// neither works; the last error is CreateFileMapping's.
CHandle OpenTraceSection(const wchar_t* path);

// True when the section for that path is held open by anybody and has this writer's address.
bool IsInTraceSection(const wchar_t* path, const TraceWriter* writer);

struct TraceSectionViewPolicy {
    using Type = TraceSection*;
    static Type Invalid() { return nullptr; }
    static void Close(Type view) { UnmapViewOfFile(view); }
};
using TraceSectionView = CScoped<TraceSectionViewPolicy>;

// The section mapped into memory; empty without a section, or when it cannot be mapped.
TraceSectionView ViewOf(const CHandle& section);

// Holds the section's lock from construction, which tries every 10 ms for at most `limit` milliseconds, or forever with
// INFINITE. After the limit the thread goes on without the lock.
class TraceSectionLock {
public:
    TraceSectionLock(TraceSection& section, DWORD limit);
    TraceSectionLock(const TraceSectionLock&) = delete;
    TraceSectionLock& operator=(const TraceSectionLock&) = delete;
    ~TraceSectionLock();

private:
    TraceSection& m_section;
    bool m_held;
};
