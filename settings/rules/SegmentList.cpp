#include "settings/rules/SegmentList.h"

#include <new>

namespace {

void ShiftIndices(SegmentRecord* from, std::int32_t by) {
    for (; from; from = from->next) {
        from->index += by;
    }
}

} // namespace

SegmentList::~SegmentList() {
    while (m_first) {
        SegmentRecord* next = m_first->next;
        delete m_first;
        m_first = next;
    }
}

bool SegmentList::Add(std::int32_t index, const SegmentRecord& contents) {
    auto* record = new (std::nothrow) SegmentRecord(contents);
    if (!record) {
        return false;
    }
    SegmentRecord** link = LinkTo(index);
    if (!link) {
        Append(record);
        return true;
    }
    record->index = index;
    record->next = *link;
    *link = record;
    ShiftIndices(record->next, 1);
    m_count = m_last->index + 1;
    return true;
}

bool SegmentList::Remove(std::int32_t index) {
    SegmentRecord** link = LinkTo(index);
    if (!link) {
        return false;
    }
    SegmentRecord* record = *link;
    if (record == m_last) {
        m_last = index > 0 ? Find(index - 1) : nullptr;
    }
    *link = record->next;
    ShiftIndices(record->next, -1);
    --m_count;
    delete record;
    return true;
}

SegmentRecord* SegmentList::Find(std::int32_t index) const {
    SegmentRecord* record = m_first;
    while (record && record->index != index) {
        record = record->next;
    }
    return record;
}

void SegmentList::Append(SegmentRecord* record) {
    record->index = m_count++;
    ++m_appends;
    record->next = nullptr;
    (m_last ? m_last->next : m_first) = record;
    m_last = record;
}

// The pointer that leads to the record at `index`, or null.
SegmentRecord** SegmentList::LinkTo(std::int32_t index) {
    SegmentRecord** link = &m_first;
    while (*link && (*link)->index != index) {
        link = &(*link)->next;
    }
    return *link ? link : nullptr;
}
