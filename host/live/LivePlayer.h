#pragma once

#include "host/files/Input.h"
#include "host/player/FrameRing.h"
#include "host/player/HoldHistory.h"
#include "host/player/RegionDrag.h"
#include "host/player/StatusText.h"
#include "host/transform/StoreCopy.h"
#include "host/transform/TransformClient.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace host {

// Puts any frame of a clip through the transform and keeps it before and after as RGB24. The transform starts from the
// user's saved settings and alone makes the pictures; each frame comes out as in a run from the clip's beginning with
// the settings as they are now. For a thread with a CPlatform; all methods throw HostError.
class CLivePlayer {
public:
    // Refuses what cannot be played from its beginning again, and an input without frames.
    explicit CLivePlayer(const Command& command);

    // Goes to a frame: at once where it is one of those kept, else by reading on, for a frame before them from the
    // beginning. Reads for about as long as given: false when it is not there yet, or behind the clip's end, which
    // Frames() then knows.
    bool Approach(std::uint64_t frame, std::uint32_t milliseconds);
    std::optional<std::uint64_t> Frames() const { return m_frames; }
    std::uint64_t Next() const { return m_next; } // frame that is read next

    // Sends a frame that Approach has reached through the transform.
    LiveFrame Process(std::uint64_t frame);
    // Whether settings have changed since a frame was last processed.
    bool IsStale() const { return m_settings.Differs(); }
    void Finish() { m_client.Finish(); }

    LiveRegion Region();
    void PutRegion(const LiveRegion& region);
    // To be called when the region stays as it is for now: its page takes it.
    void TellRegion();

    const StreamShape& Shape() const { return m_shape; }
    Rational Aspect() const { return m_aspect; }
    CHeldTransform& Transform() { return m_client.Transform(); }

    // Bottom row first, rows padded to four bytes; valid until the player goes.
    const std::uint8_t* Before() const { return m_before.data(); }
    const std::uint8_t* After() const { return m_after.data(); }

private:
    bool Read();
    SettingsFrame ForSettings() const { return {m_shape.width, m_shape.height, TraitsOf(m_shape.pixels).bottomUp}; }
    std::uint32_t ThresholdAt(double sensitivity) const;
    void PrepareHold(std::int32_t counter);
    void Show(const std::uint8_t* frame, std::vector<std::uint8_t>& picture);

    Command m_command;
    std::optional<CInput> m_input;
    StreamShape m_shape;
    Rational m_aspect;
    std::optional<std::uint64_t> m_frames;
    CTransformClient m_client;
    Microsoft::WRL::ComPtr<INMFVDeinterlace> m_control;
    CStoreCopy m_settings;
    CFrameConverter m_converter;
    CFrameRing m_ring;
    CHoldHistory m_history;
    CHoldMirror m_mirror;
    std::int32_t m_holdFrames;
    std::vector<std::uint8_t> m_before;
    std::vector<std::uint8_t> m_after;
    std::uint64_t m_next = 0;
};

} // namespace host
