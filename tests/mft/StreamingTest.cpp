// One frame in, one frame out: the states, the messages, and failures of the caller's objects.
#include "tests/support/CallHook.h"
#include "tests/support/Transform.h"

#include <numeric>

#include <mferror.h>

namespace {

constexpr DWORD kFrameBytes = 8 * 8 * 2;

// A sample of the caller's whose one buffer is hooked.
struct HookedFrame {
    explicit HookedFrame(const std::vector<BYTE>& bytes)
        : buffer(MakeBuffer(bytes, realBuffer)) {
        MakeSample(&buffer, sample);
    }

    CComRef<IMFMediaBuffer> realBuffer;
    HookedBuffer buffer;
    CComRef<IMFSample> sample;
};

class Streaming : public TransformTest {
protected:
    void SetUp() override {
        TransformTest::SetUp();
        Store()->SetUINT32(NMFV_DEINTERLACE_ENABLED, 0);
        std::iota(m_picture.begin(), m_picture.end(), BYTE{0});
    }

    void SetTypes() { TransformTest::SetTypes(MFVideoFormat_YUY2, 8, 8); }

    HRESULT Output(IMFSample* sample) {
        MFT_OUTPUT_DATA_BUFFER buffer{0, sample, 0xDEAD, nullptr};
        DWORD status = 0xDEAD;
        const HRESULT hr = Mft()->ProcessOutput(0, 1, &buffer, &status);
        EXPECT_TRUE(FAILED(hr) || (status == 0 && buffer.dwStatus == 0));
        return hr;
    }

    HRESULT Pass(HookedFrame& in, HookedFrame& out) {
        EXPECT_HR(S_OK, Mft()->ProcessInput(0, in.sample.Get(), 0));
        return Output(out.sample.Get());
    }

    bool IsHolding() {
        DWORD input = 9, output = 9;
        EXPECT_HR(S_OK, Mft()->GetInputStatus(0, &input));
        EXPECT_HR(S_OK, Mft()->GetOutputStatus(&output));
        EXPECT_EQ(1u, input + output);
        return output == MFT_OUTPUT_STATUS_SAMPLE_READY;
    }

    std::vector<BYTE> m_picture = std::vector<BYTE>(kFrameBytes);
};

TEST_F(Streaming, TakesOneSampleAtATime) {
    CComRef<IMFSample> sample, empty, two;
    MakeSample(m_picture, sample);
    MakeSample(nullptr, empty);
    CComRef<IMFMediaBuffer> buffer;
    MakeSample(MakeBuffer(m_picture, buffer), two);
    two->AddBuffer(buffer.Get());
    CComRef<IMFMediaType> type;
    MakeVideoType(MFVideoFormat_YUY2, 8, 8, type);

    EXPECT_HR(MF_E_NOTACCEPTING, Mft()->ProcessInput(0, sample.Get(), 0));
    Mft()->SetInputType(0, type.Get(), 0);
    EXPECT_HR(MF_E_NOTACCEPTING, Mft()->ProcessInput(0, sample.Get(), 0));
    SetTypes();
    EXPECT_HR(E_POINTER, Mft()->ProcessInput(1, nullptr, 1));
    EXPECT_HR(MF_E_INVALIDSTREAMNUMBER, Mft()->ProcessInput(1, sample.Get(), 1));
    EXPECT_HR(E_INVALIDARG, Mft()->ProcessInput(0, sample.Get(), 1));
    EXPECT_HR(E_FAIL, Mft()->ProcessInput(0, empty.Get(), 0));
    EXPECT_HR(MF_E_SAMPLE_HAS_TOO_MANY_BUFFERS, Mft()->ProcessInput(0, two.Get(), 0));
    EXPECT_FALSE(IsHolding());
    EXPECT_HR(S_OK, Mft()->ProcessInput(0, sample.Get(), 0));
    EXPECT_TRUE(IsHolding());
    EXPECT_HR(MF_E_NOTACCEPTING, Mft()->ProcessInput(0, sample.Get(), 0));
    ExpectRefs(sample.Get(), 2);
}

TEST_F(Streaming, OutputArgumentsComeFirst) {
    SetTypes();
    CComRef<IMFSample> sample;
    MakeSample(m_picture, sample);
    MFT_OUTPUT_DATA_BUFFER buffer{0, sample.Get(), 0, nullptr};
    DWORD status = 0;
    EXPECT_HR(MF_E_TRANSFORM_NEED_MORE_INPUT, Output(sample.Get()));
    ASSERT_HR(S_OK, Mft()->ProcessInput(0, sample.Get(), 0));
    EXPECT_HR(E_INVALIDARG, Mft()->ProcessOutput(1, 1, nullptr, nullptr));
    EXPECT_HR(E_POINTER, Mft()->ProcessOutput(0, 2, nullptr, &status));
    EXPECT_HR(E_POINTER, Mft()->ProcessOutput(0, 2, &buffer, nullptr));
    EXPECT_HR(E_INVALIDARG, Mft()->ProcessOutput(0, 2, &buffer, &status));
    EXPECT_HR(E_INVALIDARG, Mft()->ProcessOutput(0, 0, &buffer, &status));
    EXPECT_HR(E_INVALIDARG, Output(nullptr));
    EXPECT_TRUE(IsHolding()); // none of these drops the sample
}

TEST_F(Streaming, PassesPictureLengthAndTimingOn) {
    SetTypes();
    for (const bool timed : {true, false}) {
        CComRef<IMFSample> input, output;
        MakeSample(m_picture, input);
        CComRef<IMFMediaBuffer> room;
        MFCreateMemoryBuffer(kFrameBytes + 100, room.Put());
        MakeSample(room.Get(), output);
        if (timed) {
            input->SetSampleTime(400000);
            input->SetSampleDuration(333667);
        }
        input->SetUINT32(MFSampleExtension_Discontinuity, 1);
        ASSERT_HR(S_OK, Mft()->ProcessInput(0, input.Get(), 0));
        ASSERT_HR(S_OK, Output(output.Get()));
        EXPECT_FALSE(IsHolding());
        EXPECT_EQ(m_picture, BytesOf(output.Get()));
        LONGLONG time = -1, duration = -1;
        EXPECT_EQ(timed, SUCCEEDED(output->GetSampleTime(&time)));
        EXPECT_EQ(timed, SUCCEEDED(output->GetSampleDuration(&duration)));
        EXPECT_EQ(timed ? 400000 : -1, time);
        EXPECT_EQ(timed ? 333667 : -1, duration);
        EXPECT_EQ(0u, ItemsOf(output.Get()));
        ExpectRefs(input.Get(), 1);
        EXPECT_HR(MF_E_TRANSFORM_NEED_MORE_INPUT, Output(output.Get())); // never two for one
    }
}

TEST_F(Streaming, Messages) {
    SetTypes();
    CComRef<IMFSample> sample;
    MakeSample(m_picture, sample);
    ASSERT_HR(S_OK, Mft()->ProcessInput(0, sample.Get(), 0));
    EXPECT_HR(E_NOTIMPL, Mft()->ProcessMessage(MFT_MESSAGE_SET_D3D_MANAGER, 0));
    for (const auto message :
         {MFT_MESSAGE_COMMAND_DRAIN, MFT_MESSAGE_NOTIFY_BEGIN_STREAMING, MFT_MESSAGE_NOTIFY_END_STREAMING,
          MFT_MESSAGE_NOTIFY_START_OF_STREAM, MFT_MESSAGE_NOTIFY_END_OF_STREAM, static_cast<MFT_MESSAGE_TYPE>(3),
          static_cast<MFT_MESSAGE_TYPE>(4), static_cast<MFT_MESSAGE_TYPE>(0x7777)}) {
        EXPECT_HR(S_OK, Mft()->ProcessMessage(message, 1)) << message;
        EXPECT_TRUE(IsHolding()) << message;
    }
    EXPECT_HR(S_OK, Mft()->ProcessMessage(MFT_MESSAGE_COMMAND_FLUSH, 0));
    EXPECT_FALSE(IsHolding());
    ExpectRefs(sample.Get(), 1);
    EXPECT_HR(E_NOTIMPL, Mft()->SetOutputBounds(0, 1));
    EXPECT_HR(E_NOTIMPL, Mft()->ProcessEvent(0, nullptr));
    DWORD flags = 0;
    EXPECT_HR(E_POINTER, Mft()->GetInputStatus(1, nullptr));
    EXPECT_HR(MF_E_INVALIDSTREAMNUMBER, Mft()->GetInputStatus(1, &flags));
    EXPECT_HR(E_POINTER, Mft()->GetOutputStatus(nullptr));
}

TEST_F(Streaming, LockFailures) {
    SetTypes();
    for (const bool outputFails : {false, true}) {
        HookedFrame input(m_picture), output(m_picture);
        if (outputFails) {
            output.buffer.hook.Fail("Lock", E_ABORT);
        }
        EXPECT_HR(outputFails ? E_ABORT : S_OK, Pass(input, output));
        EXPECT_EQ(1, input.buffer.hook.calls["Lock"]);
        EXPECT_EQ(outputFails ? 0 : 1, input.buffer.hook.calls["Unlock"]);
        EXPECT_EQ(outputFails ? 0 : 1, output.buffer.hook.calls["Unlock"]);
    }
}

TEST_F(Streaming, ShortBuffersAreRefused) {
    SetTypes();
    const std::vector<BYTE> little(kFrameBytes - 1, 7);
    for (const bool inputIsShort : {true, false}) {
        HookedFrame input(inputIsShort ? little : m_picture), output(inputIsShort ? m_picture : little);
        EXPECT_HR(MF_E_BUFFERTOOSMALL, Pass(input, output));
        EXPECT_EQ(0, output.buffer.hook.calls["SetCurrentLength"]);
        EXPECT_EQ(1, input.buffer.hook.calls["Unlock"]);
        EXPECT_EQ(1, output.buffer.hook.calls["Unlock"]);
        EXPECT_FALSE(IsHolding());
    }
    HookedFrame silent(m_picture), output(m_picture); // a buffer that cannot tell its size is trusted
    silent.buffer.hook.Fail("GetMaxLength", E_NOTIMPL);
    EXPECT_HR(S_OK, Pass(silent, output));
}

// Empty sizes and sizes that overflow: the frame is not touched, and its length not set.
TEST_F(Streaming, UnprocessableFrames) {
    constexpr struct {
        UINT32 width, height;
    } kSizes[] = {{16, 0xFFFFFFF8}, {0, 16}, {16, 0}, {0x40000000, 0x40000000}, {0x10000, 0x10000}, {0xFFFFFFFE, 2}};
    int accepted = 0;
    for (const auto& size : kSizes) {
        SCOPED_TRACE(testing::Message() << size.width << "x" << size.height);
        CComRef<IMFMediaType> type;
        MakeVideoType(MFVideoFormat_YUY2, size.width, size.height, type);
        if (FAILED(Mft()->SetInputType(0, type.Get(), 0))) {
            continue; // the platform's own refusal
        }
        ++accepted;
        ASSERT_HR(S_OK, Mft()->SetOutputType(0, type.Get(), 0));
        EXPECT_HR(S_OK, Mft()->ProcessMessage(MFT_MESSAGE_NOTIFY_START_OF_STREAM, 0));
        HookedFrame input(std::vector<BYTE>(kFrameBytes, 0xEE)), output(m_picture);
        EXPECT_HR(S_OK, Pass(input, output));
        EXPECT_EQ(0, output.buffer.hook.calls["SetCurrentLength"]);
        EXPECT_EQ(m_picture, BytesOf(output.sample.Get()));
        EXPECT_HR(S_OK, Mft()->ProcessMessage(MFT_MESSAGE_NOTIFY_END_OF_STREAM, 0));
    }
    EXPECT_GT(accepted, 0);
}

} // namespace
