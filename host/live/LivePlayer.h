#pragma once

#include "host/files/Input.h"
#include "host/transform/TransformClient.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace host {

// Plays a clip through the transform over and over and keeps the current frame before and after as RGB24. The transform
// starts from the user's saved settings. For a thread with a CPlatform; all methods throw HostError.
class CLivePlayer {
public:
    // Refuses what cannot be played from its beginning again, and an input without frames.
    explicit CLivePlayer(const Command& command);

    void Next();
    void Finish() { m_client.Finish(); }

    const StreamShape& Shape() const { return m_shape; }
    Rational Aspect() const { return m_aspect; }
    CHeldTransform& Transform() { return m_client.Transform(); }

    // Bottom row first, rows padded to four bytes; valid until the player goes.
    const std::uint8_t* Before() const { return m_before.data(); }
    const std::uint8_t* After() const { return m_after.data(); }
    bool Changed() const { return m_changed; }
    std::uint64_t FrameNumber() const { return m_number; } // in the clip, from 0

private:
    void Read();
    void Show(const std::uint8_t* frame, std::vector<std::uint8_t>& picture);

    Command m_command;
    std::optional<CInput> m_input;
    StreamShape m_shape;
    Rational m_aspect;
    CTransformClient m_client;
    CFrameConverter m_converter;
    std::vector<std::uint8_t> m_before;
    std::vector<std::uint8_t> m_after;
    bool m_changed = false;
    std::uint64_t m_next = 0;
    std::uint64_t m_number = 0;
};

} // namespace host
