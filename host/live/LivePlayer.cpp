#include "host/live/LivePlayer.h"

#include "engine/detector/InterlaceDetector.h"
#include "host/HostError.h"

#include <algorithm>
#include <cstring>

namespace host {

namespace {

constexpr std::size_t kKeptBytes = std::size_t{256} << 20;

Command Repeatable(Command command) {
    if (command.input == "-") {
        throw HostError(ExitCode::Usage, "--live needs a file: a pipe cannot be played again.");
    }
    return command;
}

Options FromSaved(Options options) {
    options.saved = true;
    return options;
}

StreamShape ShapeOf(const CInput& input) {
    return {input.Feed(), input.Info().width, input.Info().height, input.Rate()};
}

// As many combs as a frame can have.
void FillWithCombs(std::uint8_t* frame, std::size_t stride, int height) {
    for (int y = 0; y < height; ++y) {
        std::memset(frame + stride * std::size_t(y), y % 2 ? 255 : 0, stride);
    }
}

} // namespace

CLivePlayer::CLivePlayer(const Command& command)
    : m_command(Repeatable(command))
    , m_input(m_command)
    , m_shape(ShapeOf(*m_input))
    , m_aspect(m_input->Info().aspect.value_or(Rational{1, 1}))
    , m_frames(m_input->Info().frames)
    , m_client(FromSaved(command.options), m_shape)
    , m_control(ControlOf(m_client.Transform()))
    , m_settings(StoreOf(m_client.Transform()))
    , m_converter(LayoutOf(m_shape.pixels), Layout::Rgb24, m_shape.width, m_shape.height, m_input->Info().fullRange)
    , m_ring(FrameSize(m_shape.pixels, m_shape.width, m_shape.height), kKeptBytes)
    , m_holdFrames(HoldFrames(m_client.TimePerFrame()))
    , m_before(FrameSize(Pixels::Rgb24, m_shape.width, m_shape.height))
    , m_after(m_before.size()) {
    m_command.options.quiet = true; // what opening says of the input it has said now
}

// Reads the next frame; false at the end.
bool CLivePlayer::Read() {
    std::uint8_t* const frame = m_ring.Put(m_next);
    if (!m_input->Read(frame)) {
        m_frames = std::max<std::uint64_t>(m_next, 1); // an input without frames is none
        return false;
    }
    m_ring.Keep(m_next);
    const int bits = TraitsOf(m_shape.pixels).bits;
    m_history.Add(m_next, ScanFrame(frame, m_shape.width, m_shape.height, bits, nullptr, 1).count);
    ++m_next;
    return true;
}

bool CLivePlayer::Approach(std::uint64_t frame, std::uint32_t milliseconds) {
    if (m_ring.Find(frame)) {
        return true;
    }
    if (frame < m_next) {
        m_input->Close();
        m_input.emplace(m_command);
        m_next = 0;
    }
    const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
    while (m_next <= frame && Read() && std::chrono::steady_clock::now() < until) {
    }
    return m_ring.Find(frame) != nullptr;
}

std::uint32_t CLivePlayer::ThresholdAt(double sensitivity) const {
    return InterlaceThreshold(m_shape.width, m_shape.height, sensitivity);
}

// The transform keeps the frames that it owes to itself. They are brought to what they would be in a run: by a new
// stream, and by a frame that is all combs where deinterlacing is held.
void CLivePlayer::PrepareHold(std::int32_t counter) {
    const HoldStep step = m_mirror.Before(counter, m_holdFrames);
    if (step != HoldStep::None) {
        m_client.Restart();
    }
    if (step == HoldStep::Prime) {
        FillWithCombs(m_client.Input(), FrameStride(m_shape.pixels, m_shape.width), m_shape.height);
        (void)m_client.Process();
    }
}

LiveFrame CLivePlayer::Process(std::uint64_t number) {
    m_settings.Take(); // what changes from now on is seen next time
    const ActiveSettings active = ReadActiveSettings(*m_control.Get(), ForSettings());
    LiveFrame seen;
    seen.number = number;
    seen.mode = active.mode;
    seen.combs = {m_history.CountOf(number), ThresholdAt(active.sensitivity), ThresholdAt(1), active.sensitivity};
    seen.interlaced = seen.combs.count > seen.combs.threshold;
    std::int32_t counter = m_history.CounterBefore(number, seen.combs.threshold, m_holdFrames);
    if (active.mode == Mode::Auto) {
        PrepareHold(counter);
        m_mirror.After(seen.interlaced, m_holdFrames);
    }
    (void)AdvanceHold(seen.interlaced, m_holdFrames, counter);
    seen.holdLeft = std::max(counter - 1, 0);
    std::memcpy(m_client.Input(), m_ring.Find(number), FrameSize(m_shape.pixels, m_shape.width, m_shape.height));
    const std::uint8_t* const result = m_client.Process();
    if (m_settings.Differs()) {
        m_mirror.Forget();
    }
    seen.changed = PicturesDiffer(m_shape.pixels, m_shape.width, m_shape.height, m_client.Input(), result);
    Show(m_client.Input(), m_before);
    Show(result, m_after);
    return seen;
}

void CLivePlayer::Show(const std::uint8_t* frame, std::vector<std::uint8_t>& picture) {
    m_converter.Convert(PackedFrame(m_shape.pixels, m_shape.width, m_shape.height, frame),
                        PackedFrame(Pixels::Rgb24, m_shape.width, m_shape.height, picture.data()), false);
}

// What is stored may leave the frame; what is shown must not.
LiveRegion CLivePlayer::Region() {
    VARIANT_BOOL enabled = VARIANT_FALSE;
    Check(m_control->get_EnableROI(&enabled), ExitCode::Transform, "the transform does not tell its region");
    Area area = ReadRegion(*m_control.Get(), ForSettings());
    area.left = std::clamp(area.left, 0, m_shape.width - 1);
    area.top = std::clamp(area.top, 0, m_shape.height - 1);
    area.right = std::clamp(area.right, area.left + 1, m_shape.width);
    area.bottom = std::clamp(area.bottom, area.top + 1, m_shape.height);
    return {enabled != VARIANT_FALSE, area};
}

void CLivePlayer::PutRegion(const LiveRegion& region) {
    if (region.enabled) {
        host::PutRegion(*m_control.Get(), region.area, ForSettings());
    }
    Check(m_control->put_EnableROI(region.enabled ? VARIANT_TRUE : VARIANT_FALSE), ExitCode::Transform,
          "the transform does not take its region");
}

void CLivePlayer::TellRegion() {
    (void)m_control->put_ROISettingsImportState(VARIANT_TRUE);
}

} // namespace host
