#pragma once

#include <cstdint>

namespace host {

// Keeps frames at the clip's rate, and counts how many there really are in a second. Times are seconds of any clock.
class CLivePace {
public:
    CLivePace(double framesPerSecond, double now);

    // A frame was made: how many milliseconds to wait until the next one is due. A machine that is too slow loses time,
    // not frames: nothing is caught up.
    std::uint32_t Next(double now);

    // Frames per second as they were made; 0 before the first second is over.
    double Measured() const { return m_measured; }

private:
    double m_period;
    double m_due;
    double m_countSince;
    int m_count = 0;
    double m_measured = 0;
};

} // namespace host
