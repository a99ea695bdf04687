// The transform as a host drives it: one frame in, one frame out.
#pragma once

#include "host/formats/FrameSource.h"
#include "host/command/Options.h"
#include "host/transform/HeldTransform.h"
#include "host/transform/TransformSettings.h"

#include <NMFVDeinterlace.h>
#include <chrono>
#include <cstdint>
#include <mfapi.h>
#include <mftransform.h>
#include <wrl/client.h>

namespace host {

// The format of the frames that pass through.
struct StreamShape {
    Pixels pixels = Pixels::Yuy2;
    int width = 0;
    int height = 0;
    Rational rate{25, 1};
};

// The media type of such a stream. Throws HostError with ExitCode::Transform.
Microsoft::WRL::ComPtr<IMFMediaType> MakeVideoType(const StreamShape& shape);

// One sample with one buffer of a fixed size, used for every frame.
class CFrameSample {
public:
    explicit CFrameSample(std::size_t bytes);

    IMFSample* Sample() const { return m_sample.Get(); }
    // The frame's bytes until Unlock. Each Lock needs its Unlock.
    std::uint8_t* Lock();
    void Unlock() { m_buffer->Unlock(); }
    void SetLength(std::size_t bytes);
    std::size_t Length() const;

private:
    Microsoft::WRL::ComPtr<IMFSample> m_sample;
    Microsoft::WRL::ComPtr<IMFMediaBuffer> m_buffer;
};

// COM and Media Foundation must be started, and outlive the object. Leaves the user's saved settings alone, unless
// options.save is set and Finish is reached. All methods throw HostError with ExitCode::Transform and belong to one
// thread.
class CTransformClient {
public:
    CTransformClient(const Options& options, const StreamShape& shape);
    CTransformClient(const CTransformClient&) = delete;
    CTransformClient& operator=(const CTransformClient&) = delete;
    ~CTransformClient();

    // The frame that goes in next; filled by the caller, kept between frames.
    std::uint8_t* Input() { return m_inputBytes; }
    // Sends the input frame through; the frame that came out is valid until the next call.
    const std::uint8_t* Process();
    // The stream begins anew: nothing is held.
    void Restart() { Message(MFT_MESSAGE_NOTIFY_START_OF_STREAM, "the start of the stream"); }
    // Tells the transform that the stream has ended, and saves its settings when they are to be saved.
    void Finish();

    // For those who look at its settings or change them meanwhile; any thread may.
    CHeldTransform& Transform() { return m_transform; }

    const ActiveSettings& Active() const { return m_active; }
    // How long the transform itself has worked on frames so far.
    std::chrono::steady_clock::duration Worked() const { return m_worked; }
    // 100 ns units, as the transform knows it.
    std::int64_t TimePerFrame() const { return static_cast<std::int64_t>(m_timePerFrame); }

private:
    void SetTypes();
    void Start();
    void MustForFrame(HRESULT result) const;
    void Message(MFT_MESSAGE_TYPE message, const char* name);

    bool m_save;
    StreamShape m_shape;
    std::size_t m_frameBytes;
    CHeldTransform m_transform;
    Microsoft::WRL::ComPtr<INMFVDeinterlace> m_control;
    CFrameSample m_input;
    CFrameSample m_output;
    std::uint8_t* m_inputBytes;
    std::uint8_t* m_outputBytes;
    ActiveSettings m_active;
    std::uint64_t m_timePerFrame = 0;
    std::uint64_t m_frame = 0;
    std::chrono::steady_clock::duration m_worked{};
};

} // namespace host
