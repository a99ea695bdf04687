#include "mft/VideoFormatCheck.h"

#include "engine/pixels/GrayPalette.h"
#include "mft/InputSubtypes.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include <amvideo.h>
#include <dvdmedia.h>
#include <uuids.h>

namespace {

constexpr GUID kVendorGray = {0x5952474C, 0x0000, 0x0010, {0x80, 0x00, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71}};

enum class Compression { Any, Rgb, Bitfields, RgbOrBitfields };
enum class Even { Neither, Width, WidthAndHeight };
enum class Palette { Any, Gray };

using Masks = DWORD[3]; // red, green, blue

constexpr Masks kMasks32 = {0xFF0000, 0x00FF00, 0x0000FF};
constexpr Masks kMasks565 = {0xF800, 0x07E0, 0x001F};
constexpr Masks kMasks555 = {0x7C00, 0x03E0, 0x001F};

struct FormatRule {
    DWORD format;
    const GUID* subtype;
    const GUID* otherSubtype; // or null
    WORD bits;
    Compression compression;
    const Masks* masks; // of a bitfields header, or null
    Even even;
    Palette palette;
};

// In the order of trying.
// clang-format off
const FormatRule kRules[] = {
    {kFormatRgb32, &MEDIASUBTYPE_RGB32, &MEDIASUBTYPE_ARGB32, 32, Compression::RgbOrBitfields, &kMasks32, Even::Neither, Palette::Any},
    {kFormatRgb24, &MEDIASUBTYPE_RGB24, nullptr, 24, Compression::Rgb, nullptr, Even::Neither, Palette::Any},
    {kFormatRgb8, &MEDIASUBTYPE_RGB8, nullptr, 8, Compression::Rgb, nullptr, Even::Neither, Palette::Any},
    {kFormatRgb8Gray, &MEDIASUBTYPE_RGB8, nullptr, 8, Compression::Rgb, nullptr, Even::Neither, Palette::Gray},
    {kFormatRgb565, &MEDIASUBTYPE_RGB565, nullptr, 16, Compression::Bitfields, &kMasks565, Even::Neither, Palette::Any},
    {kFormatRgb555, &MEDIASUBTYPE_RGB555, &MEDIASUBTYPE_ARGB1555, 16, Compression::RgbOrBitfields, &kMasks555, Even::Neither, Palette::Any},
    {kFormatYuy2, &MEDIASUBTYPE_YUY2, nullptr, 16, Compression::Any, nullptr, Even::Width, Palette::Any},
    {kFormatUyvy, &MEDIASUBTYPE_UYVY, nullptr, 16, Compression::Any, nullptr, Even::Width, Palette::Any},
    {kFormatYvyu, &MEDIASUBTYPE_YVYU, nullptr, 16, Compression::Any, nullptr, Even::Width, Palette::Any},
    {kFormatYv12, &MEDIASUBTYPE_YV12, nullptr, 12, Compression::Any, nullptr, Even::WidthAndHeight, Palette::Any},
    {kFormatIyu2, &kSubtypeIyu2, nullptr, 24, Compression::Any, nullptr, Even::Neither, Palette::Any},
    {kFormatGray16, &kVendorGray, nullptr, 16, Compression::Any, nullptr, Even::Neither, Palette::Any},
    {kFormatGray12, &kVendorGray, nullptr, 12, Compression::Any, nullptr, Even::Neither, Palette::Any},
};
// clang-format on

template <typename Header>
BitmapBlock BlockOf(const AM_MEDIA_TYPE& type) {
    if (!type.pbFormat || type.cbFormat < sizeof(Header)) {
        return {};
    }
    const auto* header = reinterpret_cast<const Header*>(type.pbFormat);
    return {&header->bmiHeader, type.pbFormat + sizeof(Header), static_cast<DWORD>(type.cbFormat - sizeof(Header))};
}

bool IsBlockAccepted(const GUID& formatType, FormatBlocks blocks) {
    if (formatType == FORMAT_VideoInfo) {
        return blocks != FormatBlocks::VideoInfo2;
    }
    return formatType == FORMAT_VideoInfo2 && blocks != FormatBlocks::VideoInfo;
}

bool HasMasks(const BitmapBlock& block, const Masks* masks) {
    return block.header->biCompression == BI_BITFIELDS && block.extraBytes >= sizeof(Masks) &&
           std::memcmp(block.extra, masks, sizeof(Masks)) == 0;
}

bool IsCompressionAccepted(const BitmapBlock& block, const FormatRule& rule) {
    const bool isRgb = block.header->biCompression == BI_RGB;
    switch (rule.compression) {
    case Compression::Any:
        return true;
    case Compression::Rgb:
        return isRgb;
    case Compression::Bitfields:
        return HasMasks(block, rule.masks);
    case Compression::RgbOrBitfields:
        return isRgb || HasMasks(block, rule.masks);
    }
    return false;
}

bool IsSizeAccepted(const BITMAPINFOHEADER& header, Even even) {
    const bool oddWidth = (header.biWidth & 1) != 0;
    const bool oddHeight = (header.biHeight & 1) != 0;
    return even == Even::Neither || (!oddWidth && (even == Even::Width || !oddHeight));
}

bool Matches(const AM_MEDIA_TYPE& type, const BitmapBlock& block, const FormatRule& rule) {
    if (type.subtype != *rule.subtype && !(rule.otherSubtype && type.subtype == *rule.otherSubtype)) {
        return false;
    }
    return block.header->biBitCount == rule.bits && IsCompressionAccepted(block, rule) &&
           IsSizeAccepted(*block.header, rule.even) && (rule.palette == Palette::Any || HasGrayPalette(block));
}

} // namespace

BitmapBlock FindBitmapBlock(const AM_MEDIA_TYPE& type) {
    return type.formattype == FORMAT_VideoInfo2 ? BlockOf<VIDEOINFOHEADER2>(type) : BlockOf<VIDEOINFOHEADER>(type);
}

bool HasGrayPalette(const BitmapBlock& block) {
    if (!block.header) {
        return false;
    }
    const DWORD length = PaletteLength(block.header->biBitCount, block.header->biClrUsed);
    if (length > block.extraBytes / sizeof(ColorEntry)) {
        return false;
    }
    return IsGrayPalette(reinterpret_cast<const ColorEntry*>(block.extra), length);
}

HRESULT CNerinCommon::CheckVideoFormat(const AM_MEDIA_TYPE& type, DWORD acceptedFormats, FormatBlocks blocks) {
    constexpr DWORD kAllFormats = 0x1FFF;
    if (!IsBlockAccepted(type.formattype, blocks) || (acceptedFormats & kAllFormats) == 0 ||
        type.majortype != MEDIATYPE_Video) {
        return kTypeNotAccepted;
    }
    const BitmapBlock block = FindBitmapBlock(type);
    if (!block.header) {
        return kNoBitmapHeader;
    }
    const bool accepted = std::any_of(std::begin(kRules), std::end(kRules), [&](const FormatRule& rule) {
        return (rule.format & acceptedFormats) && Matches(type, block, rule);
    });
    return accepted ? S_OK : kTypeNotAccepted;
}
