#include "host/transform/TransformClient.h"

#include "host/HostError.h"
#include "host/console/Text.h"

#include <cmath>
#include <cstring>
#include <mferror.h>

using Microsoft::WRL::ComPtr;

namespace host {

namespace {

constexpr double kUnitsPerSecond = 1e7;

// Video subtypes are their FOURCC (or, for RGB24, the number 20) in the first place of one common identifier.
GUID SubtypeOf(Pixels pixels) {
    const std::uint32_t fourcc = TraitsOf(pixels).fourcc;
    return {fourcc != 0 ? fourcc : 20, 0x0000, 0x0010, {0x80, 0x00, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71}};
}

SettingsFrame SettingsFrameOf(const StreamShape& shape) {
    return {shape.width, shape.height, TraitsOf(shape.pixels).bottomUp};
}

void Must(HRESULT result, const char* what) {
    Check(result, ExitCode::Transform, what);
}

} // namespace

ComPtr<IMFMediaType> MakeVideoType(const StreamShape& shape) {
    ComPtr<IMFMediaType> type;
    Must(MFCreateMediaType(type.GetAddressOf()), "a media type cannot be made");
    const auto width = static_cast<UINT32>(shape.width);
    const auto height = static_cast<UINT32>(shape.height);
    const HRESULT results[] = {
        type->SetGUID(MF_MT_MAJOR_TYPE, MFMediaType_Video),
        type->SetGUID(MF_MT_SUBTYPE, SubtypeOf(shape.pixels)),
        MFSetAttributeSize(type.Get(), MF_MT_FRAME_SIZE, width, height),
        MFSetAttributeRatio(type.Get(), MF_MT_FRAME_RATE, shape.rate.numerator, shape.rate.denominator),
        MFSetAttributeRatio(type.Get(), MF_MT_PIXEL_ASPECT_RATIO, 1, 1),
        type->SetUINT32(MF_MT_INTERLACE_MODE, MFVideoInterlace_MixedInterlaceOrProgressive),
        type->SetUINT32(MF_MT_ALL_SAMPLES_INDEPENDENT, TRUE),
    };
    for (const HRESULT result : results) {
        Must(result, "a media type cannot be filled");
    }
    return type;
}

CFrameSample::CFrameSample(std::size_t bytes) {
    Must(MFCreateMemoryBuffer(static_cast<DWORD>(bytes), m_buffer.GetAddressOf()), "a frame buffer cannot be made");
    Must(MFCreateSample(m_sample.GetAddressOf()), "a sample cannot be made");
    Must(m_sample->AddBuffer(m_buffer.Get()), "a sample cannot take its buffer");
    std::memset(Lock(), 0, bytes);
    Unlock();
}

std::uint8_t* CFrameSample::Lock() {
    BYTE* bytes = nullptr;
    Must(m_buffer->Lock(&bytes, nullptr, nullptr), "a frame buffer cannot be locked");
    return bytes;
}

void CFrameSample::SetLength(std::size_t bytes) {
    Must(m_buffer->SetCurrentLength(static_cast<DWORD>(bytes)), "a frame buffer cannot be filled");
}

std::size_t CFrameSample::Length() const {
    DWORD bytes = 0;
    Must(m_buffer->GetCurrentLength(&bytes), "a frame buffer does not tell its length");
    return bytes;
}

CTransformClient::CTransformClient(const Options& options, const StreamShape& shape)
    : m_save(options.save)
    , m_shape(shape)
    , m_frameBytes(FrameSize(shape.pixels, shape.width, shape.height))
    , m_transform(options)
    , m_control(ControlOf(m_transform))
    , m_input(m_frameBytes)
    , m_output(m_frameBytes)
    , m_inputBytes(m_input.Lock())
    , m_outputBytes(m_output.Lock()) {
    SetTypes();
    ApplySettings(*m_control.Get(), options, SettingsFrameOf(shape));
    Start();
}

CTransformClient::~CTransformClient() {
    m_input.Unlock();
    m_output.Unlock();
}

void CTransformClient::SetTypes() {
    const ComPtr<IMFMediaType> type = MakeVideoType(m_shape);
    const std::string format = TraitsOf(m_shape.pixels).name;
    Check(m_transform->SetInputType(0, type.Get(), 0), ExitCode::Transform,
          "the transform does not take " + format + " frames of " + std::to_string(m_shape.width) + "x" +
              std::to_string(m_shape.height));
    ComPtr<IMFMediaType> output;
    Must(m_transform->GetOutputAvailableType(0, 0, output.GetAddressOf()), "the transform offers no output type");
    HRESULT result = m_transform->SetOutputType(0, output.Get(), 0);
    if (result == MF_E_INVALIDMEDIATYPE) {
        // The transform wants the output type to equal the input type, and some platforms count an attribute that only
        // one of the two carries as a difference.
        result = m_transform->SetOutputType(0, type.Get(), 0);
    }
    Must(result, "the transform refuses the output type that it offers, and the input type as well");
    MFT_OUTPUT_STREAM_INFO info{};
    Must(m_transform->GetOutputStreamInfo(0, &info), "the transform does not tell its frame size");
    if (info.cbSize != m_frameBytes) {
        throw HostError(ExitCode::Transform, "the transform expects frames of " + std::to_string(info.cbSize) +
                                                 " bytes, not " + std::to_string(m_frameBytes) + ".");
    }
}

void CTransformClient::Start() {
    m_active = ReadActiveSettings(*m_control.Get(), SettingsFrameOf(m_shape));
    UINT64 time = 0;
    Must(MFFrameRateToAverageTimePerFrame(m_shape.rate.numerator, m_shape.rate.denominator, &time),
         "the frame rate cannot be used");
    m_timePerFrame = time;
    Message(MFT_MESSAGE_NOTIFY_BEGIN_STREAMING, "the beginning of streaming");
    Restart();
}

void CTransformClient::Message(MFT_MESSAGE_TYPE message, const char* name) {
    Check(m_transform->ProcessMessage(message, 0), ExitCode::Transform, std::string("the transform refuses ") + name);
}

const std::uint8_t* CTransformClient::Process() {
    const auto when = [this](std::uint64_t number) {
        return std::llround(static_cast<double>(number) * kUnitsPerSecond / m_shape.rate.Value());
    };
    m_input.SetLength(m_frameBytes);
    Must(m_input.Sample()->SetSampleTime(when(m_frame)), "a sample cannot be stamped");
    Must(m_input.Sample()->SetSampleDuration(when(m_frame + 1) - when(m_frame)), "a sample cannot be stamped");
    m_output.SetLength(0);
    const auto begin = std::chrono::steady_clock::now();
    MustForFrame(m_transform->ProcessInput(0, m_input.Sample(), 0));
    MFT_OUTPUT_DATA_BUFFER buffer{};
    buffer.pSample = m_output.Sample();
    DWORD status = 0;
    MustForFrame(m_transform->ProcessOutput(0, 1, &buffer, &status));
    m_worked += std::chrono::steady_clock::now() - begin;
    // A frame that the engine could not process is reported by nothing but the length that was not set.
    MustForFrame(m_output.Length() == m_frameBytes ? S_OK : E_UNEXPECTED);
    ++m_frame;
    return m_outputBytes;
}

void CTransformClient::MustForFrame(HRESULT result) const {
    if (FAILED(result)) {
        Check(result, ExitCode::Transform, "the transform fails on frame " + std::to_string(m_frame));
    }
}

void CTransformClient::Finish() {
    Message(MFT_MESSAGE_NOTIFY_END_OF_STREAM, "the end of the stream");
    Message(MFT_MESSAGE_COMMAND_DRAIN, "to be drained");
    Message(MFT_MESSAGE_NOTIFY_END_STREAMING, "the end of streaming");
    if (m_save) {
        Must(m_control->SaveAttributes(), "the settings cannot be saved");
    }
}

} // namespace host
