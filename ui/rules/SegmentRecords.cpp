#include "ui/rules/SegmentRecords.h"

#include <new>
#include <utility>

void PageSegmentList::Clear() {
    while (m_first) {
        PageSegment* const next = m_first->next;
        delete m_first;
        m_first = next;
    }
    m_count = 0;
}

void PageSegmentList::Swap(PageSegmentList& other) {
    std::swap(m_first, other.m_first);
    std::swap(m_count, other.m_count);
}

bool PageSegmentList::Insert(std::int32_t index, const PageSegment& contents) {
    auto* const segment = new (std::nothrow) PageSegment(contents);
    if (!segment) {
        return false;
    }
    PageSegment** const link = LinkTo(index);
    segment->next = *link;
    *link = segment;
    Renumber();
    return true;
}

bool PageSegmentList::Remove(std::int32_t index) {
    PageSegment** const link = LinkTo(index);
    PageSegment* const segment = *link;
    if (!segment) {
        return false;
    }
    *link = segment->next;
    delete segment;
    Renumber();
    return true;
}

bool PageSegmentList::ExchangeWithNext(std::int32_t index) {
    PageSegment** const link = LinkTo(index);
    PageSegment* const segment = *link;
    if (!segment || !segment->next) {
        return false;
    }
    PageSegment* const neighbour = segment->next;
    segment->next = neighbour->next;
    neighbour->next = segment;
    *link = neighbour;
    Renumber();
    return true;
}

PageSegment PageSegmentList::Template(std::int32_t index, const FramePattern& pattern, std::int32_t operation) const {
    const PageSegment* like = Find(index);
    if (!like) {
        like = Find(m_count - 1);
    }
    if (like) {
        return *like;
    }
    PageSegment fresh;
    fresh.pattern = pattern;
    fresh.operation = operation;
    return fresh;
}

PageSegment* PageSegmentList::Find(std::int32_t index) const {
    PageSegment* segment = m_first;
    while (segment && segment->index != index) {
        segment = segment->next;
    }
    return segment;
}

// The pointer that leads to the segment at `index`, or the one at the end of the list.
PageSegment** PageSegmentList::LinkTo(std::int32_t index) {
    PageSegment** link = &m_first;
    while (*link && (*link)->index != index) {
        link = &(*link)->next;
    }
    return link;
}

void PageSegmentList::Renumber() {
    m_count = 0;
    for (PageSegment* segment = m_first; segment; segment = segment->next) {
        segment->index = m_count++;
    }
}
