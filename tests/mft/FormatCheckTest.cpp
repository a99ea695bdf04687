// The general video format check, on types made by hand.
#include "mft/InputSubtypes.h"
#include "mft/StreamFormatReader.h"
#include "mft/VideoFormatCheck.h"
#include "tests/support/ComChecks.h"
#include "tests/support/Media.h"

#include <cstring>
#include <vector>

#include <amvideo.h>
#include <dvdmedia.h>
#include <uuids.h>

namespace {

HRESULT Check(const AM_MEDIA_TYPE& type, DWORD formats, FormatBlocks blocks = FormatBlocks::Both) {
    return CNerinCommon::CheckVideoFormat(type, formats, blocks);
}

// A legacy type with one bitmap header and what follows it.
template <typename Header>
struct Legacy {
    explicit Legacy(REFGUID formatType, REFGUID subtype, WORD bits, std::vector<DWORD> extra = {},
                    DWORD compression = BI_RGB)
        : block(sizeof(Header) + extra.size() * 4) {
        Header header{};
        header.bmiHeader.biWidth = 16;
        header.bmiHeader.biHeight = 8;
        header.bmiHeader.biBitCount = bits;
        header.bmiHeader.biCompression = compression;
        std::memcpy(block.data(), &header, sizeof header);
        std::memcpy(block.data() + sizeof header, extra.data(), extra.size() * 4);
        type.majortype = MEDIATYPE_Video;
        type.subtype = subtype;
        type.formattype = formatType;
        type.pbFormat = block.data();
        type.cbFormat = static_cast<ULONG>(block.size());
    }

    BITMAPINFOHEADER& Bitmap() { return reinterpret_cast<Header*>(block.data())->bmiHeader; }

    std::vector<BYTE> block;
    AM_MEDIA_TYPE type{};
};

using LegacyInfo = Legacy<VIDEOINFOHEADER>;

std::vector<DWORD> GrayRamp(DWORD entries, DWORD spoil = 0) {
    std::vector<DWORD> ramp;
    for (DWORD i = 0; i < entries; ++i) {
        ramp.push_back((i * 255 / (entries - 1)) * 0x010101);
    }
    ramp.back() ^= spoil;
    return ramp;
}

TEST(FormatCheck, EachFormatNeedsItsBitAndItsHeader) {
    constexpr GUID kGray = {0x5952474C, 0, 0x10, {0x80, 0, 0, 0xAA, 0, 0x38, 0x9B, 0x71}};
    const struct {
        const char* name;
        const GUID* subtype;
        WORD bits;
        DWORD compression;
        std::vector<DWORD> extra;
        DWORD mask;
    } kRows[] = {
        {"rgb32", &MEDIASUBTYPE_RGB32, 32, BI_RGB, {}, 0x20},
        {"argb32 masks", &MEDIASUBTYPE_ARGB32, 32, BI_BITFIELDS, {0xFF0000, 0xFF00, 0xFF}, 0x20},
        {"rgb24", &MEDIASUBTYPE_RGB24, 24, BI_RGB, {}, 0x10},
        {"rgb8", &MEDIASUBTYPE_RGB8, 8, BI_RGB, {}, 0x02},
        {"rgb8 grey", &MEDIASUBTYPE_RGB8, 8, BI_RGB, GrayRamp(256), 0x01},
        {"rgb565", &MEDIASUBTYPE_RGB565, 16, BI_BITFIELDS, {0xF800, 0x07E0, 0x001F}, 0x08},
        {"rgb555", &MEDIASUBTYPE_RGB555, 16, BI_RGB, {}, 0x04},
        {"yuy2", &MEDIASUBTYPE_YUY2, 16, 0x32595559, {}, 0x40},
        {"uyvy", &MEDIASUBTYPE_UYVY, 16, 0x59565955, {}, 0x80},
        {"yvyu", &MEDIASUBTYPE_YVYU, 16, 0x55595659, {}, 0x800},
        {"yv12", &MEDIASUBTYPE_YV12, 12, 0x32315659, {}, 0x100},
        {"iyu2", &kSubtypeIyu2, 24, 0x32555949, {}, 0x1000},
        {"grey16", &kGray, 16, 0x5952474C, {}, 0x400},
        {"grey12", &kGray, 12, 0x5952474C, {}, 0x200},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.name);
        LegacyInfo legacy(FORMAT_VideoInfo, *row.subtype, row.bits, row.extra, row.compression);
        EXPECT_HR(S_OK, Check(legacy.type, row.mask));
        const DWORD others = 0x1FFF & ~row.mask & (row.mask == 0x01 ? ~DWORD{0x02} : ~DWORD{0});
        EXPECT_HR(kTypeNotAccepted, Check(legacy.type, others));
        legacy.Bitmap().biBitCount ^= 1;
        EXPECT_HR(kTypeNotAccepted, Check(legacy.type, row.mask));
    }
}

TEST(FormatCheck, SizesMasksAndPalettes) {
    LegacyInfo odd(FORMAT_VideoInfo, MEDIASUBTYPE_YUY2, 16);
    odd.Bitmap().biWidth = 15;
    EXPECT_HR(kTypeNotAccepted, Check(odd.type, 0x40));
    odd.Bitmap().biWidth = 16;
    odd.Bitmap().biHeight = -7;
    EXPECT_HR(S_OK, Check(odd.type, 0x40));
    LegacyInfo planar(FORMAT_VideoInfo, MEDIASUBTYPE_YV12, 12);
    planar.Bitmap().biHeight = 7;
    EXPECT_HR(kTypeNotAccepted, Check(planar.type, 0x100));

    LegacyInfo swapped(FORMAT_VideoInfo, MEDIASUBTYPE_RGB565, 16, {0x1F, 0x7E0, 0xF800}, BI_BITFIELDS);
    EXPECT_HR(kTypeNotAccepted, Check(swapped.type, 0x08));
    LegacyInfo cut(FORMAT_VideoInfo, MEDIASUBTYPE_RGB565, 16, {0xF800, 0x7E0}, BI_BITFIELDS);
    EXPECT_HR(kTypeNotAccepted, Check(cut.type, 0x08)); // reads no further than the block

    LegacyInfo tinted(FORMAT_VideoInfo, MEDIASUBTYPE_RGB8, 8, GrayRamp(256, 0x000001));
    EXPECT_HR(kTypeNotAccepted, Check(tinted.type, 0x01));
    LegacyInfo smaller(FORMAT_VideoInfo, MEDIASUBTYPE_RGB8, 8, GrayRamp(16));
    EXPECT_HR(kTypeNotAccepted, Check(smaller.type, 0x01)); // 256 entries were promised
    smaller.Bitmap().biClrUsed = 16;
    EXPECT_HR(S_OK, Check(smaller.type, 0x01));
}

TEST(FormatCheck, BlocksAndMajorType) {
    LegacyInfo info(FORMAT_VideoInfo, MEDIASUBTYPE_RGB24, 24);
    Legacy<VIDEOINFOHEADER2> info2(FORMAT_VideoInfo2, MEDIASUBTYPE_RGB24, 24);
    EXPECT_HR(S_OK, Check(info.type, 0x10, FormatBlocks::VideoInfo));
    EXPECT_HR(kTypeNotAccepted, Check(info.type, 0x10, FormatBlocks::VideoInfo2));
    EXPECT_HR(kTypeNotAccepted, Check(info2.type, 0x10, FormatBlocks::VideoInfo));
    EXPECT_HR(S_OK, Check(info2.type, 0x10, FormatBlocks::VideoInfo2));
    EXPECT_HR(S_OK, Check(info2.type, 0x10));
    EXPECT_HR(kTypeNotAccepted, Check(info.type, 0x2000));
    info.type.formattype = FORMAT_MPEGVideo;
    EXPECT_HR(kTypeNotAccepted, Check(info.type, 0x10));
    info.type.formattype = FORMAT_VideoInfo;
    info.type.cbFormat = sizeof(VIDEOINFOHEADER) - 1;
    EXPECT_HR(kNoBitmapHeader, Check(info.type, 0x10));
    info.type.cbFormat = sizeof(VIDEOINFOHEADER);
    info.type.majortype = MEDIATYPE_Audio;
    EXPECT_HR(kTypeNotAccepted, Check(info.type, 0x10));
}

// The sizes that a negative height gives: the platform may pass such a type.
TEST(FormatCheck, NegativeHeight) {
    CComRef<IMFMediaType> type;
    MakeVideoType(MFVideoFormat_YUY2, 16, static_cast<UINT32>(-8), type);
    StreamFormat stream;
    TransformFormat transform;
    ASSERT_HR(S_OK, ReadStreamFormat(type.Get(), stream, transform));
    EXPECT_EQ(-8, stream.m_lHeight);
    EXPECT_EQ(256, stream.m_lBufferSize);
    EXPECT_EQ(static_cast<UINT32>(-256), transform.SampleBytes);
    EXPECT_EQ(1, stream.m_bPacked422);
    EXPECT_EQ(0x32595559u, static_cast<UINT32>(transform.SubtypeCode));
    EXPECT_EQ(400000, stream.m_rtAvgTimePerFrame);
}

} // namespace
