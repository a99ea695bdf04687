// Clips through the shipped DLL, as a pipeline sends them, against the rules written out.
#include "engine/detector/AutoHold.h"
#include "engine/pixels/FrameShape.h"
#include "engine/detector/InterlaceDetector.h"
#include "tests/support/CallHook.h"
#include "tests/support/ComChecks.h"
#include "tests/support/GuardedBlocks.h"
#include "tests/support/Media.h"
#include "tests/support/Module.h"
#include "tests/support/OraclePixels.h"
#include "tests/support/PrivateRegistry.h"
#include "tests/support/RandomBytes.h"

namespace {

constexpr GUID kIyu2 = {0x32555949, 0x0000, 0x0010, {0x80, 0x00, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71}};

// A buffer in memory that ends at a closed page; the real one behind it only keeps its length.
class GuardedBuffer : public HookedBuffer {
public:
    GuardedBuffer(IMFMediaBuffer* length, std::span<BYTE> bytes)
        : HookedBuffer(length)
        , m_bytes(bytes) {}

    STDMETHODIMP Lock(BYTE** bytes, DWORD*, DWORD*) override { return *bytes = m_bytes.data(), S_OK; }
    STDMETHODIMP Unlock() override { return S_OK; }

    std::span<BYTE> Bytes() const { return m_bytes; }

private:
    std::span<BYTE> m_bytes;
};

struct ClipCase {
    const char* name;
    const GUID* subtype;
    INT32 width, height, bits;
    bool automatic;
    OracleOptions options;
};

void PrintTo(const ClipCase& clip, std::ostream* out) {
    *out << clip.name;
}

const ClipCase kClips[] = {
    {"rgb24 rebuild", &MFVideoFormat_RGB24, 123, 37, 24, false, {false, false}},
    {"rgb24 auto merge", &MFVideoFormat_RGB24, 64, 48, 24, true, {false, true}},
    {"yuy2 auto rebuild even", &MFVideoFormat_YUY2, 720, 36, 16, true, {true, false}},
    {"uyvy merge in a region", &MFVideoFormat_UYVY, 66, 35, 16, false, {false, true, true, true, 5, 3, 40, 30}},
    {"iyu2 rebuild in a region", &kIyu2, 67, 35, 24, false, {true, false, true, true, 5, 3, 40, 30}},
    {"iyu2 auto merge", &kIyu2, 67, 35, 24, true, {false, true}},
};

class Pictures : public testing::TestWithParam<ClipCase> {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_user.Active());
        ASSERT_HR(S_OK, m_module.CreateTransform(m_transform));
        ASSERT_HR(S_OK, m_transform->QueryInterface(IID_INMFVDeinterlace, m_control.PutVoid()));
    }

    void Configure(const ClipCase& c) {
        CComRef<IMFMediaType> type;
        MakeVideoType(*c.subtype, static_cast<UINT32>(c.width), static_cast<UINT32>(c.height), type, 1);
        ASSERT_HR(S_OK, m_transform->SetInputType(0, type.Get(), 0));
        ASSERT_HR(S_OK, m_transform->SetOutputType(0, type.Get(), 0));
        m_control->put_AutoDeinterlace(c.automatic);
        m_control->put_Even(c.options.even);
        m_control->put_MergeFields(c.options.merge);
        m_control->put_EnableROI(c.options.useRegion);
        m_control->put_ROIRight(static_cast<LONG>(c.options.right));
        m_control->put_ROIBottom(static_cast<LONG>(c.options.bottom));
        m_control->put_ROILeft(static_cast<LONG>(c.options.left));
        m_control->put_ROITop(static_cast<LONG>(c.options.top));
        ASSERT_HR(S_OK, m_transform->ProcessMessage(MFT_MESSAGE_NOTIFY_START_OF_STREAM, 0));
    }

    PrivateRegistry m_user{HKEY_CURRENT_USER};
    Module m_module;
    CComRef<IMFTransform> m_transform;
    CComRef<INMFVDeinterlace> m_control;
};

// Every seventh frame combed, the others smooth: at one frame per second a hold lasts five frames.
TEST_P(Pictures, EveryFrameIsWhatTheRulesSay) {
    const ClipCase& c = GetParam();
    Configure(c);
    const INT32 stride = StrideBytes(c.bits, c.width);
    const auto bytes = static_cast<DWORD>(FrameBytes(stride, c.height));
    const GuardedBlocks blocks(2, bytes);
    CComRef<IMFMediaBuffer> inLength, outLength;
    MFCreateMemoryBuffer(bytes, inLength.Put());
    MFCreateMemoryBuffer(bytes, outLength.Put());
    GuardedBuffer input(inLength.Get(), {blocks.AtEnd(0, bytes), bytes});
    GuardedBuffer output(outLength.Get(), {blocks.AtEnd(1, bytes), bytes});
    CComRef<IMFSample> in, out;
    MakeSample(&input, in);
    MakeSample(&output, out);
    RandomBytes random(TestSeed());
    INT32 hold = 0;
    int deinterlaced = 0;
    for (int frame = 0; frame < 24; ++frame) {
        random.Fill(input.Bytes());
        if (frame % 7 != 2) {
            for (INT32 row = 1; row < c.height; ++row) {
                // Steps too small to comb, but large enough to show whether the frame was deinterlaced.
                std::transform(input.Bytes().begin(), input.Bytes().begin() + stride,
                               input.Bytes().begin() + row * stride,
                               [row](BYTE b) { return static_cast<BYTE>(b + row % 4 * 2); });
            }
        }
        random.Fill(output.Bytes());
        std::vector<BYTE> expected(output.Bytes().begin(), output.Bytes().end());
        const bool combed = ScanFrame(input.Bytes().data(), c.width, c.height, c.bits, nullptr, 1.0).interlaced;
        const bool wanted = !c.automatic || AdvanceHold(combed, HoldFrames(10'000'000), hold);
        if (wanted) {
            OracleDeinterlace({c.width, c.height, c.bits, false}, c.options, input.Bytes().data(), expected.data());
        } else {
            expected.assign(input.Bytes().begin(), input.Bytes().end());
        }
        deinterlaced += wanted;
        ASSERT_HR(S_OK, m_transform->ProcessInput(0, in.Get(), 0));
        MFT_OUTPUT_DATA_BUFFER buffer{0, out.Get(), 0, nullptr};
        DWORD status = 0;
        ASSERT_HR(S_OK, m_transform->ProcessOutput(0, 1, &buffer, &status));
        DWORD length = 0;
        output.GetCurrentLength(&length);
        EXPECT_EQ(bytes, length);
        ASSERT_TRUE(std::ranges::equal(expected, output.Bytes())) << "frame " << frame << " seed " << TestSeed();
    }
    EXPECT_EQ(c.automatic ? 16 : 24, deinterlaced); // 2 to 6, 9 to 13, 16 to 20, 23
    m_transform->ProcessMessage(MFT_MESSAGE_NOTIFY_END_OF_STREAM, 0);
}

INSTANTIATE_TEST_SUITE_P(Clips, Pictures, testing::ValuesIn(kClips), [](const auto& clip) {
    std::string name = clip.param.name;
    std::replace(name.begin(), name.end(), ' ', '_');
    return name;
});

} // namespace
