#include "host/player/LivePace.h"

#include <cmath>

namespace host {

CLivePace::CLivePace(double framesPerSecond, double now)
    : m_period(1 / framesPerSecond)
    , m_due(now)
    , m_countSince(now) {}

std::uint32_t CLivePace::Next(double now) {
    ++m_count;
    if (now - m_countSince >= 1) {
        m_measured = m_count / (now - m_countSince);
        m_countSince = now;
        m_count = 0;
    }
    m_due += m_period;
    if (m_due < now) {
        m_due = now;
    }
    return static_cast<std::uint32_t>(std::lround((m_due - now) * 1000));
}

} // namespace host
