// Which types the transform offers and takes, and what it derives from them.
#include "mft/InputSubtypes.h"
#include "tests/support/Transform.h"

#include <iterator>

#include <mferror.h>

namespace {

class Negotiation : public TransformTest {};

TEST_F(Negotiation, OffersFourPartialTypes) {
    const GUID* const expected[] = {&MFVideoFormat_RGB24, &MFVideoFormat_YUY2, &MFVideoFormat_UYVY, &kSubtypeIyu2};
    for (DWORD i = 0; i < std::size(expected); ++i) {
        CComRef<IMFMediaType> type;
        ASSERT_HR(S_OK, Mft()->GetInputAvailableType(0, i, type.Put()));
        GUID major{}, subtype{};
        type->GetGUID(MF_MT_MAJOR_TYPE, &major);
        type->GetGUID(MF_MT_SUBTYPE, &subtype);
        EXPECT_TRUE(major == MFMediaType_Video);
        EXPECT_TRUE(subtype == *expected[i]) << i;
        EXPECT_EQ(2u, ItemsOf(type.Get()));
        ExpectRefs(type.Get(), 1);
    }
    CComRef<IMFMediaType> type;
    EXPECT_HR(MF_E_NO_MORE_TYPES, Mft()->GetInputAvailableType(0, 4, type.Put()));
    EXPECT_HR(MF_E_NO_MORE_TYPES, Mft()->GetInputAvailableType(0, 0xFFFFFFFF, type.Put()));
    EXPECT_HR(MF_E_INVALIDSTREAMNUMBER, Mft()->GetInputAvailableType(1, 0, type.Put()));
}

TEST_F(Negotiation, NullPointers) {
    DWORD n = 0;
    EXPECT_HR(E_POINTER, Mft()->GetAttributes(nullptr));
    EXPECT_HR(E_INVALIDARG, Mft()->GetInputAvailableType(0, 0, nullptr));
    EXPECT_HR(E_INVALIDARG, Mft()->GetOutputAvailableType(0, 0, nullptr));
    EXPECT_HR(E_POINTER, Mft()->GetInputCurrentType(0, nullptr));
    EXPECT_HR(E_POINTER, Mft()->GetOutputCurrentType(1, nullptr));
    EXPECT_HR(E_POINTER, Mft()->GetInputStreamInfo(0, nullptr));
    EXPECT_HR(E_POINTER, Mft()->GetOutputStreamInfo(1, nullptr));
    EXPECT_HR(E_POINTER, Mft()->GetStreamCount(&n, nullptr));
    EXPECT_HR(E_POINTER, Mft()->GetStreamLimits(&n, &n, nullptr, &n));
}

TEST_F(Negotiation, FixedLayout) {
    DWORD n[4] = {};
    EXPECT_HR(S_OK, Mft()->GetStreamLimits(&n[0], &n[1], &n[2], &n[3]));
    EXPECT_TRUE(std::all_of(n, n + 4, [](DWORD value) { return value == 1; }));
    EXPECT_HR(S_OK, Mft()->GetStreamCount(&n[0], &n[1]));
    CComRef<IMFAttributes> attributes;
    EXPECT_HR(E_NOTIMPL, Mft()->GetStreamIDs(1, n, 1, n));
    EXPECT_HR(E_NOTIMPL, Mft()->GetInputStreamAttributes(0, attributes.Put()));
    EXPECT_HR(E_NOTIMPL, Mft()->GetOutputStreamAttributes(0, attributes.Put()));
    EXPECT_HR(E_NOTIMPL, Mft()->DeleteInputStream(0));
    EXPECT_HR(E_NOTIMPL, Mft()->AddInputStreams(1, n));
}

constexpr struct {
    const GUID* subtype;
    UINT32 width, height;
    HRESULT result;
    DWORD bytes;
} kFormats[] = {
    {&MFVideoFormat_YUY2, 720, 480, S_OK, 691200},
    {&MFVideoFormat_UYVY, 2, 1, S_OK, 4},
    {&MFVideoFormat_RGB24, 721, 2, S_OK, 4328},
    {&kSubtypeIyu2, 721, 2, S_OK, 4328},
    {&MFVideoFormat_RGB24, 1, 3, S_OK, 12},
    {&MFVideoFormat_YUY2, 721, 480, MF_E_INVALIDMEDIATYPE, 0},
    {&MFVideoFormat_UYVY, 1, 480, MF_E_INVALIDMEDIATYPE, 0},
    {&MFVideoFormat_NV12, 720, 480, MF_E_INVALIDMEDIATYPE, 0},
    {&MFVideoFormat_YV12, 720, 480, MF_E_INVALIDMEDIATYPE, 0},
    {&MFVideoFormat_RGB32, 720, 480, MF_E_INVALIDMEDIATYPE, 0},
    {&MFVideoFormat_RGB8, 720, 480, MF_E_INVALIDMEDIATYPE, 0},
};

TEST_F(Negotiation, FormatsAndSizes) {
    for (const auto& row : kFormats) {
        SCOPED_TRACE(testing::Message() << std::hex << row.subtype->Data1 << std::dec << " " << row.width << "x"
                                        << row.height);
        CComRef<IMFMediaType> type;
        MakeVideoType(*row.subtype, row.width, row.height, type);
        Mft()->SetInputType(0, nullptr, 0);
        EXPECT_HR(row.result, Mft()->SetInputType(0, type.Get(), MFT_SET_TYPE_TEST_ONLY));
        MFT_INPUT_STREAM_INFO input{};
        EXPECT_HR(S_OK, Mft()->GetInputStreamInfo(0, &input));
        EXPECT_EQ(0u, input.cbSize); // a test stores nothing
        EXPECT_HR(row.result, Mft()->SetOutputType(0, type.Get(), MFT_SET_TYPE_TEST_ONLY));
        EXPECT_HR(row.result, Mft()->SetInputType(0, type.Get(), 0));
        EXPECT_HR(S_OK, Mft()->GetInputStreamInfo(0, &input));
        EXPECT_EQ(row.bytes, input.cbSize);
        EXPECT_EQ(3u, input.dwFlags);
        MFT_OUTPUT_STREAM_INFO output{99, 99, 99};
        EXPECT_HR(S_OK, Mft()->GetOutputStreamInfo(0, &output));
        EXPECT_EQ(row.bytes, output.cbSize);
        EXPECT_EQ(7u, output.dwFlags);
        EXPECT_EQ(0u, output.cbAlignment);
    }
    MFT_INPUT_STREAM_INFO input{1, 2, 3, 4, 5};
    EXPECT_HR(MF_E_INVALIDSTREAMNUMBER, Mft()->GetInputStreamInfo(1, &input));
    EXPECT_EQ(3u, input.cbSize); // untouched
    MFT_OUTPUT_STREAM_INFO output{};
    EXPECT_HR(MF_E_INVALIDSTREAMNUMBER, Mft()->GetOutputStreamInfo(1, &output));
}

TEST_F(Negotiation, OutputIsTheInput) {
    CComRef<IMFMediaType> type, offered, current;
    EXPECT_HR(MF_E_TRANSFORM_TYPE_NOT_SET, Mft()->GetOutputAvailableType(0, 0, offered.Put()));
    MakeVideoType(MFVideoFormat_YUY2, 720, 480, type);
    ASSERT_HR(S_OK, Mft()->SetInputType(0, type.Get(), 0));
    EXPECT_HR(MF_E_NO_MORE_TYPES, Mft()->GetOutputAvailableType(0, 1, offered.Put()));
    EXPECT_HR(MF_E_INVALIDSTREAMNUMBER, Mft()->GetOutputAvailableType(1, 0, offered.Put()));
    ASSERT_HR(S_OK, Mft()->GetOutputAvailableType(0, 0, offered.Put()));
    EXPECT_EQ(1u, StoredNumber(offered.Get(), MF_MT_FIXED_SIZE_SAMPLES));
    EXPECT_EQ(691200u, StoredNumber(offered.Get(), MF_MT_SAMPLE_SIZE));
    EXPECT_HR(S_OK, Mft()->SetOutputType(0, offered.Get(), MFT_SET_TYPE_TEST_ONLY)); // with its two attributes more
    EXPECT_HR(MF_E_TRANSFORM_TYPE_NOT_SET, Mft()->GetOutputCurrentType(0, current.Put()));
    EXPECT_HR(S_OK, Mft()->SetOutputType(0, type.Get(), 0));
    EXPECT_HR(S_OK, Mft()->GetOutputCurrentType(0, current.Put()));
    EXPECT_NE(type.Get(), current.Get()); // a copy
    ExpectRefs(current.Get(), 1);

    for (const auto& [subtype, width] : {std::pair{&MFVideoFormat_YUY2, 722u}, {&MFVideoFormat_UYVY, 720u}}) {
        CComRef<IMFMediaType> other;
        MakeVideoType(*subtype, width, 480, other);
        EXPECT_HR(MF_E_INVALIDMEDIATYPE, Mft()->SetOutputType(0, other.Get(), 0));
    }
}

TEST_F(Negotiation, ClearingAndArguments) {
    CComRef<IMFMediaType> type, current;
    MakeVideoType(MFVideoFormat_RGB24, 8, 8, type);
    ASSERT_HR(S_OK, Mft()->SetInputType(0, type.Get(), 0));
    ASSERT_HR(S_OK, Mft()->SetOutputType(0, type.Get(), 0));
    ExpectRefs(type.Get(), 3);
    EXPECT_HR(E_INVALIDARG, Mft()->SetInputType(0, type.Get(), 2));
    EXPECT_HR(E_INVALIDARG, Mft()->SetOutputType(0, nullptr, 4));
    EXPECT_HR(MF_E_INVALIDSTREAMNUMBER, Mft()->SetInputType(1, type.Get(), 0));
    EXPECT_HR(MF_E_INVALIDSTREAMNUMBER, Mft()->SetOutputType(1, type.Get(), 0));
    EXPECT_HR(S_OK, Mft()->SetInputType(5, nullptr, 0));
    EXPECT_HR(MF_E_TRANSFORM_TYPE_NOT_SET, Mft()->GetInputCurrentType(0, current.Put()));
    EXPECT_HR(S_OK, Mft()->GetOutputCurrentType(0, current.Put())); // stays
    EXPECT_EQ(8, Get(&INMFVDeinterlace::get_InWidth));              // the format stays too
    EXPECT_HR(S_OK, Mft()->SetOutputType(5, nullptr, 0));
    ExpectRefs(type.Get(), 1);
    EXPECT_HR(MF_E_INVALIDSTREAMNUMBER, Mft()->GetInputCurrentType(1, current.Put()));
}

TEST_F(Negotiation, FrameRateMayBeMissing) {
    SetTypes(MFVideoFormat_RGB24, 8, 8, 50);
    SetTypes(MFVideoFormat_YUY2, 8, 8, 0);
    EXPECT_EQ(50.0, Get(&INMFVDeinterlace::get_FrameRate)); // the earlier values stay
    EXPECT_EQ(16, Get(&INMFVDeinterlace::get_InBits));
}

TEST_F(Negotiation, IncompleteTypesPassTheirErrorOn) {
    CComRef<IMFMediaType> type;
    MFCreateMediaType(type.Put());
    EXPECT_HR(MF_E_ATTRIBUTENOTFOUND, Mft()->SetInputType(0, type.Get(), 0));
    type->SetGUID(MF_MT_MAJOR_TYPE, MFMediaType_Audio);
    EXPECT_HR(MF_E_INVALIDMEDIATYPE, Mft()->SetInputType(0, type.Get(), 0));
    type->SetGUID(MF_MT_MAJOR_TYPE, MFMediaType_Video);
    EXPECT_HR(MF_E_ATTRIBUTENOTFOUND, Mft()->SetInputType(0, type.Get(), 0));
}

TEST_F(Negotiation, NoChangeWhileASampleIsHeld) {
    SetTypes(MFVideoFormat_RGB24, 8, 8);
    CComRef<IMFMediaType> type;
    ASSERT_HR(S_OK, Mft()->GetInputCurrentType(0, type.Put()));
    CComRef<IMFSample> sample;
    MakeSample(std::vector<BYTE>(192), sample);
    ASSERT_HR(S_OK, Mft()->ProcessInput(0, sample.Get(), 0));
    EXPECT_HR(MF_E_TRANSFORM_CANNOT_CHANGE_MEDIATYPE_WHILE_PROCESSING, Mft()->SetInputType(0, type.Get(), 0));
    EXPECT_HR(MF_E_TRANSFORM_CANNOT_CHANGE_MEDIATYPE_WHILE_PROCESSING, Mft()->SetOutputType(0, type.Get(), 1));
    EXPECT_HR(S_OK, Mft()->SetInputType(0, nullptr, 0)); // clearing is not examined
}

} // namespace
