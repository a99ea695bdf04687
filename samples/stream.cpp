// Streams a few combed frames through the transform and tells what became of the combs. The transform is made from the
// DLL's file; nothing is registered, and the program links no library of the SDK.
//
//     stream [NMFVDeitrx.dll]
#include <initguid.h>

#include <NMFVDeinterlace.h>
#include <mfapi.h>
#include <mferror.h>
#include <mftransform.h>
#include <wrl/client.h>

#include <cstdio>
#include <cstdlib>
#include <stdexcept>

using Microsoft::WRL::ComPtr;

namespace {

constexpr UINT32 kWidth = 64, kHeight = 32, kFrameBytes = kWidth * kHeight * 2;
constexpr LONGLONG kDuration = 400000; // of a frame at 25 a second, in 100 ns

void Check(HRESULT hr, const char* what) {
    if (FAILED(hr)) {
        char text[160];
        std::snprintf(text, sizeof text, "%s: 0x%08lX", what, static_cast<unsigned long>(hr));
        throw std::runtime_error(text);
    }
}

// The DLL stays loaded until the program ends: its objects need it.
ComPtr<IMFTransform> MakeTransform(const wchar_t* file) {
    const HMODULE module = LoadLibraryW(file);
    Check(module ? S_OK : HRESULT_FROM_WIN32(GetLastError()), "LoadLibrary");
    const auto entry = reinterpret_cast<decltype(&DllGetClassObject)>(
        reinterpret_cast<void*>(GetProcAddress(module, "DllGetClassObject")));
    Check(entry ? S_OK : HRESULT_FROM_WIN32(GetLastError()), "GetProcAddress");
    ComPtr<IClassFactory> factory;
    ComPtr<IMFTransform> transform;
    Check(entry(CLSID_NMFVDeinterlace, IID_PPV_ARGS(factory.GetAddressOf())), "DllGetClassObject");
    Check(factory->CreateInstance(nullptr, IID_PPV_ARGS(transform.GetAddressOf())), "CreateInstance");
    return transform;
}

// The same type for both sides.
void SetTypes(IMFTransform* transform) {
    ComPtr<IMFMediaType> type;
    Check(MFCreateMediaType(type.GetAddressOf()), "MFCreateMediaType");
    Check(type->SetGUID(MF_MT_MAJOR_TYPE, MFMediaType_Video), "major type");
    Check(type->SetGUID(MF_MT_SUBTYPE, MFVideoFormat_YUY2), "subtype");
    Check(MFSetAttributeSize(type.Get(), MF_MT_FRAME_SIZE, kWidth, kHeight), "frame size");
    Check(MFSetAttributeRatio(type.Get(), MF_MT_FRAME_RATE, 25, 1), "frame rate");
    Check(type->SetUINT32(MF_MT_INTERLACE_MODE, MFVideoInterlace_MixedInterlaceOrProgressive), "interlace mode");
    Check(transform->SetInputType(0, type.Get(), 0), "SetInputType");
    Check(transform->SetOutputType(0, type.Get(), 0), "SetOutputType");
}

ComPtr<IMFSample> MakeSample(ComPtr<IMFMediaBuffer>& buffer) {
    ComPtr<IMFSample> sample;
    Check(MFCreateSample(sample.GetAddressOf()), "MFCreateSample");
    Check(MFCreateMemoryBuffer(kFrameBytes, buffer.ReleaseAndGetAddressOf()), "MFCreateMemoryBuffer");
    Check(sample->AddBuffer(buffer.Get()), "AddBuffer");
    return sample;
}

// Grey; the rows of one field dark, those of the other bright.
void FillWithCombs(IMFMediaBuffer* buffer) {
    BYTE* bytes = nullptr;
    Check(buffer->Lock(&bytes, nullptr, nullptr), "Lock");
    for (UINT32 i = 0; i < kFrameBytes; ++i) {
        bytes[i] = i % 2 ? 128 : (i / (kWidth * 2) % 2 ? 200 : 60);
    }
    Check(buffer->Unlock(), "Unlock");
    Check(buffer->SetCurrentLength(kFrameBytes), "SetCurrentLength");
}

// How far two rows in the middle differ.
int CombsOf(IMFMediaBuffer* buffer) {
    BYTE* bytes = nullptr;
    DWORD length = 0;
    Check(buffer->Lock(&bytes, nullptr, &length), "Lock");
    const BYTE* const row = bytes + kFrameBytes / 2;
    const int combs = length == kFrameBytes ? std::abs(row[0] - row[kWidth * 2]) : -1;
    Check(buffer->Unlock(), "Unlock");
    Check(combs < 0 ? E_UNEXPECTED : S_OK, "frame size");
    return combs;
}

void StreamFrame(IMFTransform* transform, int number) {
    ComPtr<IMFMediaBuffer> in, out;
    const ComPtr<IMFSample> input = MakeSample(in), output = MakeSample(out);
    FillWithCombs(in.Get());
    Check(input->SetSampleTime(number * kDuration), "SetSampleTime");
    Check(input->SetSampleDuration(kDuration), "SetSampleDuration");
    Check(transform->ProcessInput(0, input.Get(), 0), "ProcessInput");
    MFT_OUTPUT_DATA_BUFFER buffer{};
    buffer.pSample = output.Get();
    DWORD status = 0;
    Check(transform->ProcessOutput(0, 1, &buffer, &status), "ProcessOutput");
    LONGLONG time = 0;
    Check(output->GetSampleTime(&time), "GetSampleTime");
    std::printf("frame at %lld ms: combs of %d, then of %d\n", time / 10000, CombsOf(in.Get()), CombsOf(out.Get()));
}

void Stream(const wchar_t* file) {
    const ComPtr<IMFTransform> transform = MakeTransform(file);
    ComPtr<INMFVDeinterlace> control;
    Check(transform.As(&control), "INMFVDeinterlace");
    // A new transform has the user's saved settings.
    Check(control->ResetToDefaultsEx(NMVDeinterlace_APILEVEL_2), "ResetToDefaultsEx");
    Check(control->put_MergeFields(VARIANT_FALSE), "put_MergeFields");
    SetTypes(transform.Get());
    Check(transform->ProcessMessage(MFT_MESSAGE_NOTIFY_BEGIN_STREAMING, 0), "begin");
    Check(transform->ProcessMessage(MFT_MESSAGE_NOTIFY_START_OF_STREAM, 0), "start");
    for (int number = 0; number < 4; ++number) {
        StreamFrame(transform.Get(), number);
    }
    Check(transform->ProcessMessage(MFT_MESSAGE_NOTIFY_END_OF_STREAM, 0), "end of stream");
    Check(transform->ProcessMessage(MFT_MESSAGE_NOTIFY_END_STREAMING, 0), "end");
    // It saves its settings when it goes: let them be those that were saved.
    Check(control->ResetToDefaultsEx(NMVDeinterlace_APILEVEL_2), "ResetToDefaultsEx");
    Check(control->LoadAttributes(), "LoadAttributes");
}

void Run(const wchar_t* file) {
    Check(CoInitializeEx(nullptr, COINIT_MULTITHREADED), "CoInitializeEx");
    Check(MFStartup(MF_VERSION, MFSTARTUP_LITE), "MFStartup");
    Stream(file);
    Check(MFShutdown(), "MFShutdown");
    CoUninitialize();
}

} // namespace

int wmain(int count, wchar_t** arguments) try {
    Run(count > 1 ? arguments[1] : L"NMFVDeitrx.dll");
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "stream: %s\n", error.what());
    return 1;
}
