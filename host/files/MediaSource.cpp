#include "host/files/MediaSource.h"

#include "host/HostError.h"
#include "host/console/Text.h"
#include "host/formats/BobWatch.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <mfapi.h>
#include <mferror.h>
#include <mfidl.h>
#include <mfreadwrite.h>
#include <span>
#include <wrl/client.h>

using Microsoft::WRL::ComPtr;

namespace host {

namespace {

constexpr double kUnitsPerSecond = 1e7;
constexpr DWORD kVideo = static_cast<DWORD>(MF_SOURCE_READER_FIRST_VIDEO_STREAM);

// What is asked of the decoder, the best first: the formats that carry the picture's own lines. The platform's
// conversion to RGB is the last resort, because it may already deinterlace.
struct Wanted {
    const GUID* subtype;
    Layout layout;
};
const Wanted kWanted[] = {
    {&MFVideoFormat_YUY2, Layout::Yuy2},      {&MFVideoFormat_UYVY, Layout::Uyvy},
    {&MFVideoFormat_NV12, Layout::Nv12},      {&MFVideoFormat_I420, Layout::Planar420},
    {&MFVideoFormat_IYUV, Layout::Planar420}, {&MFVideoFormat_RGB24, Layout::Rgb24},
    {&MFVideoFormat_RGB32, Layout::Rgb32},
};
// Two pixels of the first two formats share their chroma, so a picture of odd width cannot be taken from them.
const Wanted kWantedOfOddWidth[] = {
    {&MFVideoFormat_RGB24, Layout::Rgb24},    {&MFVideoFormat_RGB32, Layout::Rgb32},
    {&MFVideoFormat_NV12, Layout::Nv12},      {&MFVideoFormat_I420, Layout::Planar420},
    {&MFVideoFormat_IYUV, Layout::Planar420},
};

class CMediaSource final : public IFrameSource {
public:
    explicit CMediaSource(const std::string& path)
        : m_name(path) {
        ComPtr<IMFAttributes> attributes;
        Must(MFCreateAttributes(attributes.GetAddressOf(), 1), "cannot be opened");
        Must(MFCreateSourceReaderFromURL(ToWide(path).c_str(), attributes.Get(), m_reader.GetAddressOf()),
             "this is no Y4M or uncompressed AVI, and the platform cannot decode it. Let another program do so "
             "(ffmpeg -i FILE -pix_fmt yuv422p -f yuv4mpegpipe - | nmfvdeint - OUTPUT), or name raw frames with --raw");
        (void)m_reader->SetStreamSelection(static_cast<DWORD>(MF_SOURCE_READER_ALL_STREAMS), FALSE);
        Must(m_reader->SetStreamSelection(kVideo, TRUE), "holds no video");
        ChooseType();
        TakeLength();
        NameSideStreams();
    }
    CMediaSource(const CMediaSource&) = delete;
    CMediaSource& operator=(const CMediaSource&) = delete;
    ~CMediaSource() override { Release(); }

    const ClipInfo& Info() const override { return m_info; }
    bool IsIrregular() const override { return m_irregular; }
    bool FieldChroma() const override { return MayBeInterlaced(m_info.scan); }
    bool Next() override;
    FrameView Frame() const override;

private:
    void Must(HRESULT result, const char* what) const { Check(result, ExitCode::Input, m_name + ": " + what); }
    void ChooseType();
    bool TakeFirst(std::span<const Wanted> list);
    void TakeType();
    void TakeColors(IMFMediaType& type);
    void TakeLength();
    void NameSideStreams();
    void Hold(IMFSample& sample);
    void CheckTime(IMFSample& sample);
    void CheckFields();
    void Release();

    std::string m_name;
    ComPtr<IMFSourceReader> m_reader;
    ClipInfo m_info;
    int m_codedWidth = 0; // of the frames in memory, which may be larger than the picture
    int m_codedHeight = 0;
    int m_stride = 0;
    bool m_bottomUp = false;
    ComPtr<IMFMediaBuffer> m_buffer; // locked while it is held
    const std::uint8_t* m_bytes = nullptr;
    std::uint64_t m_next = 0;
    std::optional<LONGLONG> m_time; // of the frame before
    bool m_irregular = false;
    CBobWatch m_bobs;
};

void CMediaSource::ChooseType() {
    const bool any = TakeFirst(kWanted);
    if (!any || (m_info.width % 2 != 0 && !TakeFirst(kWantedOfOddWidth))) {
        throw HostError(ExitCode::Input, m_name + ": its video can be decoded to no format that is known here.");
    }
}

bool CMediaSource::TakeFirst(std::span<const Wanted> list) {
    for (const Wanted& wanted : list) {
        ComPtr<IMFMediaType> type;
        Must(MFCreateMediaType(type.GetAddressOf()), "cannot be opened");
        Must(type->SetGUID(MF_MT_MAJOR_TYPE, MFMediaType_Video), "cannot be opened");
        Must(type->SetGUID(MF_MT_SUBTYPE, *wanted.subtype), "cannot be opened");
        if (SUCCEEDED(m_reader->SetCurrentMediaType(kVideo, nullptr, type.Get()))) {
            m_info.layout = wanted.layout;
            TakeType();
            return true;
        }
    }
    return false;
}

Scan ScanOf(IMFMediaType& type) {
    switch (MFGetAttributeUINT32(&type, MF_MT_INTERLACE_MODE, MFVideoInterlace_Unknown)) {
    case MFVideoInterlace_Progressive:
        return Scan::Progressive;
    case MFVideoInterlace_FieldInterleavedUpperFirst:
        return Scan::TopFirst;
    case MFVideoInterlace_FieldInterleavedLowerFirst:
        return Scan::BottomFirst;
    case MFVideoInterlace_MixedInterlaceOrProgressive:
        return Scan::Mixed;
    default:
        return Scan::Unknown;
    }
}

void CMediaSource::TakeType() {
    ComPtr<IMFMediaType> type;
    Must(m_reader->GetCurrentMediaType(kVideo, type.GetAddressOf()), "does not tell its format");
    UINT32 width = 0;
    UINT32 height = 0;
    Must(MFGetAttributeSize(type.Get(), MF_MT_FRAME_SIZE, &width, &height), "does not tell its size");
    if (width == 0 || height == 0 || width > kMaxSide || height > kMaxSide) {
        throw HostError(ExitCode::Input, m_name + ": a picture of " + std::to_string(width) + "x" +
                                             std::to_string(height) + " cannot be read.");
    }
    m_codedWidth = m_info.width = static_cast<int>(width);
    m_codedHeight = m_info.height = static_cast<int>(height);
    MFVideoArea shown{};
    if (SUCCEEDED(
            type->GetBlob(MF_MT_MINIMUM_DISPLAY_APERTURE, reinterpret_cast<UINT8*>(&shown), sizeof shown, nullptr)) &&
        shown.OffsetX.value == 0 && shown.OffsetY.value == 0 && shown.Area.cx > 0 && shown.Area.cx <= m_codedWidth &&
        shown.Area.cy > 0 && shown.Area.cy <= m_codedHeight) {
        m_info.width = shown.Area.cx;
        m_info.height = shown.Area.cy;
    }
    const auto told = static_cast<INT32>(MFGetAttributeUINT32(type.Get(), MF_MT_DEFAULT_STRIDE, 1));
    const INT32 stride = std::clamp(told, -4 * kMaxSide, 4 * kMaxSide);
    const bool rgb = m_info.layout == Layout::Rgb24 || m_info.layout == Layout::Rgb32;
    m_bottomUp = rgb && stride < 0;
    m_stride = std::max(std::abs(stride), LeastStride(m_info.layout, m_codedWidth));
    Rational rate;
    if (SUCCEEDED(MFGetAttributeRatio(type.Get(), MF_MT_FRAME_RATE, &rate.numerator, &rate.denominator))) {
        m_info.rate = UsableRate(rate);
    }
    Rational aspect;
    if (SUCCEEDED(MFGetAttributeRatio(type.Get(), MF_MT_PIXEL_ASPECT_RATIO, &aspect.numerator, &aspect.denominator))) {
        m_info.aspect = ReducedRatio(aspect.numerator, aspect.denominator);
    }
    m_info.scan = ScanOf(*type.Get());
    TakeColors(*type.Get());
}

void CMediaSource::TakeColors(IMFMediaType& type) {
    m_info.fullRange = MFGetAttributeUINT32(&type, MF_MT_VIDEO_NOMINAL_RANGE, 0) == MFNominalRange_0_255;
    const UINT32 matrix = MFGetAttributeUINT32(&type, MF_MT_YUV_MATRIX, 0);
    if (matrix == MFVideoTransferMatrix_BT709 || matrix == MFVideoTransferMatrix_BT601) {
        m_info.bt709 = matrix == MFVideoTransferMatrix_BT709;
    }
}

void CMediaSource::TakeLength() {
    PROPVARIANT duration;
    PropVariantInit(&duration);
    if (m_info.rate && SUCCEEDED(m_reader->GetPresentationAttribute(static_cast<DWORD>(MF_SOURCE_READER_MEDIASOURCE),
                                                                    MF_PD_DURATION, &duration))) {
        m_info.frames = static_cast<std::uint64_t>(
            std::llround(static_cast<double>(duration.uhVal.QuadPart) * 1e-7 * m_info.rate->Value()));
    }
    PropVariantClear(&duration);
}

bool CMediaSource::Next() {
    Release();
    for (;;) {
        DWORD flags = 0;
        ComPtr<IMFSample> sample;
        const HRESULT result = m_reader->ReadSample(kVideo, 0, nullptr, &flags, nullptr, sample.GetAddressOf());
        if (FAILED(result) || (flags & MF_SOURCE_READERF_ERROR)) {
            throw HostError(ExitCode::Input,
                            m_name + ": frame " + std::to_string(m_next) + " cannot be decoded: " + ResultText(result));
        }
        if (flags & MF_SOURCE_READERF_CURRENTMEDIATYPECHANGED) {
            const ClipInfo before = m_info;
            TakeType();
            if (before.width != m_info.width || before.height != m_info.height) {
                throw HostError(ExitCode::Input, m_name + ": the picture size changes at frame " +
                                                     std::to_string(m_next) + "; cut the file there.");
            }
        }
        if (sample) {
            Hold(*sample.Get());
            CheckTime(*sample.Get());
            CheckFields();
            ++m_next;
            return true;
        }
        if (flags & MF_SOURCE_READERF_ENDOFSTREAM) {
            return false;
        }
    }
}

// The streams that are not read, for those who want to know what is left out.
void CMediaSource::NameSideStreams() {
    ComPtr<IMFMediaType> type;
    for (DWORD i = 0; SUCCEEDED(m_reader->GetNativeMediaType(i, 0, type.ReleaseAndGetAddressOf())); ++i) {
        GUID major{};
        if (SUCCEEDED(type->GetMajorType(&major)) && major != MFMediaType_Video) {
            m_info.sideStreams.push_back({major == MFMediaType_Audio ? "audio" : "other", {}, {}});
        }
    }
}

// Rates are rounded, and frames come in the order of their times: half a frame's time off is no rounding.
void CMediaSource::CheckTime(IMFSample& sample) {
    LONGLONG time = 0;
    if (!m_info.rate || FAILED(sample.GetSampleTime(&time))) {
        return;
    }
    const double period = kUnitsPerSecond / m_info.rate->Value();
    m_irregular = m_irregular || (m_time && std::abs(static_cast<double>(time - *m_time) - period) > period / 2);
    m_time = time;
}

// Under Wine the decoder takes interlaced frames apart, whatever it is asked for, and says that the clip has twice as
// many.
void CMediaSource::CheckFields() {
    if (m_bobs.Look(Frame())) {
        throw HostError(ExitCode::Input,
                        m_name + ": the platform's decoder makes two frames of each interlaced one, so nothing is left "
                                 "to deinterlace. Let another program decode it: ffmpeg -i FILE -pix_fmt yuv422p -f "
                                 "yuv4mpegpipe - | nmfvdeint - OUTPUT");
    }
}

void CMediaSource::Hold(IMFSample& sample) {
    Must(sample.ConvertToContiguousBuffer(m_buffer.GetAddressOf()), "a frame has no buffer");
    BYTE* bytes = nullptr;
    DWORD length = 0;
    const HRESULT result = m_buffer->Lock(&bytes, nullptr, &length);
    if (FAILED(result)) {
        m_buffer.Reset();
        Must(result, "a frame cannot be read");
    }
    m_bytes = bytes;
    const std::size_t needed = DecodedBytes(m_info.layout, m_codedHeight, m_stride);
    if (length < needed) {
        throw HostError(ExitCode::Input, m_name + ": frame " + std::to_string(m_next) + " has " +
                                             std::to_string(length) + " bytes instead of " + std::to_string(needed) +
                                             ".");
    }
}

void CMediaSource::Release() {
    if (m_buffer) {
        m_buffer->Unlock();
        m_buffer.Reset();
        m_bytes = nullptr;
    }
}

FrameView CMediaSource::Frame() const {
    FrameView frame = DecodedFrame(m_info.layout, m_codedWidth, m_codedHeight, m_stride, m_bytes);
    if (m_bottomUp) {
        frame.plane[0] += frame.stride[0] * (m_codedHeight - 1);
        frame.stride[0] = -frame.stride[0];
    }
    frame.width = m_info.width;
    frame.height = m_info.height;
    return frame;
}

} // namespace

std::unique_ptr<IFrameSource> OpenMedia(const std::string& path) {
    return std::make_unique<CMediaSource>(path);
}

} // namespace host
