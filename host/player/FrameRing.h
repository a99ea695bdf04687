#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace host {

// Keeps the last frames that were read, for going back without reading again.
class CFrameRing {
public:
    // Takes memory up to `mostBytes` as frames come, but has room for two at least and 1024 at most.
    CFrameRing(std::size_t frameBytes, std::size_t mostBytes);

    // Where the frame's bytes are to be written, before Keep; another frame may have to go.
    std::uint8_t* Put(std::uint64_t frame);
    void Keep(std::uint64_t frame) { m_slots[frame % m_capacity].frame = frame; }
    // Null when it is not kept.
    const std::uint8_t* Find(std::uint64_t frame) const;
    std::size_t Capacity() const { return m_capacity; }

private:
    struct Slot {
        std::optional<std::uint64_t> frame;
        std::vector<std::uint8_t> bytes;
    };

    std::size_t m_frameBytes;
    std::size_t m_capacity;
    std::vector<Slot> m_slots;
};

} // namespace host
