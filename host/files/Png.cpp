#include "host/files/Png.h"

#include "host/console/Text.h"

#include <objbase.h>
#include <wincodec.h>
#include <wrl/client.h>

using Microsoft::WRL::ComPtr;

namespace host {

namespace {

// Encodes into memory; the file itself is written as every other output is.
std::vector<BYTE> Encode(const std::string& path, const Image& image) {
    const auto must = [&path](HRESULT result) {
        Check(result, ExitCode::Output, path + ": the picture cannot be encoded");
    };
    const auto width = static_cast<UINT>(image.width);
    const auto height = static_cast<UINT>(image.height);
    ComPtr<IWICImagingFactory> factory;
    must(
        CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(factory.GetAddressOf())));
    ComPtr<IStream> stream;
    must(CreateStreamOnHGlobal(nullptr, TRUE, stream.GetAddressOf()));
    ComPtr<IWICBitmapEncoder> encoder;
    must(factory->CreateEncoder(GUID_ContainerFormatPng, nullptr, encoder.GetAddressOf()));
    must(encoder->Initialize(stream.Get(), WICBitmapEncoderNoCache));
    ComPtr<IWICBitmapFrameEncode> frame;
    must(encoder->CreateNewFrame(frame.GetAddressOf(), nullptr));
    must(frame->Initialize(nullptr));
    must(frame->SetSize(width, height));
    WICPixelFormatGUID format = GUID_WICPixelFormat24bppBGR;
    must(frame->SetPixelFormat(&format));
    must(IsEqualGUID(format, GUID_WICPixelFormat24bppBGR) ? S_OK : WINCODEC_ERR_UNSUPPORTEDPIXELFORMAT);
    must(frame->WritePixels(height, 3 * width, static_cast<UINT>(image.pixels.size()),
                            const_cast<BYTE*>(image.pixels.data()))); // the call takes, but does not write them
    must(frame->Commit());
    must(encoder->Commit());
    STATSTG size{};
    must(stream->Stat(&size, STATFLAG_NONAME));
    std::vector<BYTE> bytes(static_cast<std::size_t>(size.cbSize.QuadPart));
    must(stream->Seek({}, STREAM_SEEK_SET, nullptr));
    ULONG read = 0;
    must(stream->Read(bytes.data(), static_cast<ULONG>(bytes.size()), &read));
    bytes.resize(read);
    return bytes;
}

} // namespace

void WritePng(IOutput& output, const Image& image) {
    const std::vector<BYTE> bytes = Encode(output.Name(), image);
    output.Write(bytes.data(), bytes.size());
    output.Commit();
}

} // namespace host
