// The terms of CNerinCommon::CheckVideoFormat, which tells a format from its legacy format block.
#pragma once

#include "engine/NerinCommon.h"

#include <wingdi.h>

// Accepted formats, one bit each.
inline constexpr DWORD kFormatRgb8Gray = 0x0001;
inline constexpr DWORD kFormatRgb8 = 0x0002;
inline constexpr DWORD kFormatRgb555 = 0x0004;
inline constexpr DWORD kFormatRgb565 = 0x0008;
inline constexpr DWORD kFormatRgb24 = 0x0010;
inline constexpr DWORD kFormatRgb32 = 0x0020;
inline constexpr DWORD kFormatYuy2 = 0x0040;
inline constexpr DWORD kFormatUyvy = 0x0080;
inline constexpr DWORD kFormatYv12 = 0x0100;
inline constexpr DWORD kFormatGray12 = 0x0200;
inline constexpr DWORD kFormatGray16 = 0x0400;
inline constexpr DWORD kFormatYvyu = 0x0800;
inline constexpr DWORD kFormatIyu2 = 0x1000;

// Which format blocks are accepted.
enum class FormatBlocks { VideoInfo = 0, VideoInfo2 = 1, Both = 2 };

inline constexpr HRESULT kTypeNotAccepted = static_cast<HRESULT>(0x8004022A); // VFW_E_TYPE_NOT_ACCEPTED
inline constexpr HRESULT kNoBitmapHeader = static_cast<HRESULT>(0x80040248);

// A bitmap header and the colour masks or palette behind it, within a format block.
struct BitmapBlock {
    const BITMAPINFOHEADER* header = nullptr; // null when the type carries none
    const BYTE* extra = nullptr;
    DWORD extraBytes = 0;
};

// The header of the VIDEOINFOHEADER2 for that format type, of the VIDEOINFOHEADER otherwise. Points into `type`.
BitmapBlock FindBitmapBlock(const AM_MEDIA_TYPE& type);

// True when the block's palette is a linear grey ramp; false without a palette and above 8 bits per pixel.
bool HasGrayPalette(const BitmapBlock& block);
