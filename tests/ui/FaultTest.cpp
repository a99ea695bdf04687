// Every allocation and every call of the platform fails once, in the shipped DLL: nothing is lost, the failure is told
// where one is told at all, and the next time all is right.
#include "tests/support/ComChecks.h"
#include "tests/support/Faults.h"
#include "tests/support/Media.h"
#include "tests/support/Module.h"
#include "tests/support/OraclePixels.h"
#include "tests/support/PrivateRegistry.h"
#include "tests/support/RandomBytes.h"
#include "tests/ui/SheetWindow.h"

#include "NMFVDeinterlaceKeys.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <string_view>

#include <mferror.h>
#include <mftransform.h>

namespace {

constexpr int kAttributeMethods = 33, kSampleMethods = 47, kTypeMethods = 38, kBufferMethods = 8;
constexpr OracleFrame kFrame{16, 12, 16};
const std::size_t kBytes = static_cast<std::size_t>(kFrame.Bytes());

// The first failure of calls that are all made.
class FirstFailure {
public:
    FirstFailure& operator<<(HRESULT result) {
        m_result = FAILED(m_result) ? m_result : result;
        return *this;
    }
    HRESULT Result() const { return m_result; }

private:
    HRESULT m_result = S_OK;
};

class FaultsOf : public testing::Test {
protected:
    void SetUp() override {
        m_picture.resize(kBytes);
        RandomBytes(TestSeed()).Fill(m_picture);
        MakeVideoType(MFVideoFormat_YUY2, UINT32(kFrame.width), UINT32(kFrame.height), m_type);
        for (auto* sample : {&m_in, &m_out}) {
            CComRef<IMFMediaBuffer> buffer;
            MakeSample(MakeBuffer(m_picture, buffer), *sample);
            Faults::Watch(buffer.Get(), kBufferMethods);
            Faults::Watch(sample->Get(), kSampleMethods);
        }
        m_in->SetSampleTime(1);
        m_in->SetSampleDuration(2);
        Faults::Watch(m_type.Get(), kTypeMethods);
        ASSERT_HR(S_OK, m_module.CreateTransform(m_transform));
        ASSERT_HR(S_OK, m_transform->QueryInterface(IID_INMFVDeinterlace, m_control.PutVoid()));
        ASSERT_HR(S_OK, m_transform->GetAttributes(m_store.Put()));
        Faults::Watch(m_store.Get(), kAttributeMethods);
        Configure();
        ASSERT_HR(S_OK, SetTypes());
        ASSERT_HR(S_OK, m_transform->ProcessMessage(MFT_MESSAGE_NOTIFY_START_OF_STREAM, 0));
    }

    HRESULT SetTypes() {
        const HRESULT hr = m_transform->SetInputType(0, m_type.Get(), 0);
        return FAILED(hr) ? hr : m_transform->SetOutputType(0, m_type.Get(), 0);
    }

    HRESULT Pass() {
        MFT_OUTPUT_DATA_BUFFER buffer{0, m_out.Get(), 0, nullptr};
        DWORD status = 0;
        const HRESULT hr = m_transform->ProcessInput(0, m_in.Get(), 0);
        return FAILED(hr) ? hr : m_transform->ProcessOutput(0, 1, &buffer, &status);
    }

    HRESULT OpenPage(const CLSID& clsid) {
        CComRef<IPropertyPage> page;
        if (const HRESULT hr = m_module.Create(clsid, page); FAILED(hr)) {
            return hr;
        }
        IUnknown* object = m_control.Get();
        PROPPAGEINFO info{};
        const RECT rect{0, 0, 640, 700};
        FirstFailure failure;
        failure << page->SetPageSite(&m_site) << page->GetPageInfo(&info) << page->SetObjects(1, &object);
        CoTaskMemFree(info.pszTitle);
        CoTaskMemFree(info.pszHelpFile);
        failure << page->Activate(m_sheet.Get(), &rect, FALSE);
        RedrawWindow(m_sheet.Get(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
        failure << page->Deactivate() << page->SetObjects(0, nullptr) << page->SetPageSite(nullptr);
        return failure.Result();
    }

    HRESULT Remember() {
        CAUUID pages{};
        CComRef<ISpecifyPropertyPages> specify;
        m_control->QueryInterface(IID_ISpecifyPropertyPages, specify.PutVoid());
        FirstFailure failure;
        failure << m_control->SaveAttributes() << m_control->LoadAttributes() << specify->GetPages(&pages);
        CoTaskMemFree(pages.pElems);
        const HRESULT hr = m_control->AddSegment(0);
        failure << hr << (FAILED(hr) ? hr : m_control->RemoveSegment(0));
        return failure.Result();
    }

    // Settings that have the frame's whole path done.
    void Configure() {
        m_control->ResetToDefaultsEx(NMVDeinterlace_APILEVEL_2);
        const std::pair<const GUID*, UINT32> numbers[] = {
            {&NMFV_DEINTERLACE_ENABLE_ROI, 1}, {&NMFV_DEINTERLACE_ENABLE_PROTECTED_AREA, 1},
            {&NMFV_DEINTERLACE_ROI_LEFT, 2},   {&NMFV_DEINTERLACE_ROI_RIGHT, 14},
            {&NMFV_DEINTERLACE_ROI_TOP, 1},    {&NMFV_DEINTERLACE_ROI_BOTTOM, 12}};
        for (const auto& [key, number] : numbers) {
            m_store->SetUINT32(*key, number);
        }
        m_store->SetDouble(NMFV_DEINTERLACE_AUTO_SENSITIVITY, 0.001);
        m_control->SetProtectedAreaParams(2, 8, 1, 5);
    }

    // What comes out of a frame now.
    std::vector<BYTE> Picture() {
        CComRef<IMFMediaBuffer> buffer;
        m_out->ConvertToContiguousBuffer(buffer.Put());
        BYTE* bytes = nullptr;
        buffer->Lock(&bytes, nullptr, nullptr);
        std::fill_n(bytes, kBytes, BYTE{0xA5});
        buffer->Unlock();
        EXPECT_HR(S_OK, Pass());
        return BytesOf(m_out.Get());
    }

    PrivateRegistry m_user{HKEY_CURRENT_USER};
    Module m_module;
    Faults m_faults{m_module.Handle()};
    std::vector<BYTE> m_picture;
    CComRef<IMFMediaType> m_type;
    CComRef<IMFSample> m_in, m_out;
    CComRef<IMFTransform> m_transform;
    CComRef<INMFVDeinterlace> m_control;
    CComRef<IMFAttributes> m_store;
    SheetWindow m_sheet;
    NotingSite m_site;
};

TEST_F(FaultsOf, EveryCall) {
    const struct {
        const char* name;
        std::function<HRESULT()> run;
        int least;               // calls that there are at least, so that the scenario is one
        std::optional<int> told; // how many of them the caller hears of, where that is not the platform's to say
        HRESULT other = S_OK;    // a failure that may stand for another
        bool again = true;       // done once more after each failure; a page is new each time
    } kScenarios[] = {
        {"creation",
         [this] {
             CComRef<IMFTransform> another;
             return m_module.CreateTransform(another);
         },
         13, 2},
        {"types", [this] { return SetTypes(); }, 30, {}, MF_E_INVALIDMEDIATYPE},
        {"start", [this] { return m_transform->ProcessMessage(MFT_MESSAGE_NOTIFY_START_OF_STREAM, 0); }, 4, 0},
        {"frame", [this] { return Pass(); }, 30, 7},
        {"settings", [this] { return Remember(); }, 40, {}, E_INVALIDARG}, // the platform's own, of its methods
        {"reset", [this] { return m_control->ResetToDefaultsEx(NMVDeinterlace_APILEVEL_1); }, 25, 25},
        {"settings page", [this] { return OpenPage(CLSID_NMFVDeinterlaceSettingsPage); }, 40, {}, S_OK, false},
        {"region page", [this] { return OpenPage(CLSID_NMFVDeinterlaceRoiPage); }, 40, {}, S_OK, false},
        {"about page", [this] { return OpenPage(CLSID_NMFVDeinterlaceAboutPage); }, 10, {}, S_OK, false},
    };
    const std::vector<BYTE> picture = Picture();
    ASSERT_NE(m_picture, picture);
    std::ranges::for_each(kScenarios, [](const auto& scenario) { EXPECT_HR(S_OK, scenario.run()); });
    const DWORD drawing = DrawingObjects();
    for (const auto& scenario : kScenarios) {
        std::optional<int> held; // after the first failure: run-times keep what that takes
        const ULONG references = ReferencesOf(m_transform.Get());
        int failures = 0, told = 0;
        for (bool failed = true; failed && !HasFailure();) {
            Faults::Arm(++failures);
            const HRESULT hr = scenario.run();
            failed = Faults::Disarm();
            told += FAILED(hr);
            SCOPED_TRACE(testing::Message()
                         << scenario.name << " without call " << failures << ", " << Faults::Failed());
            EXPECT_TRUE(hr == S_OK || hr == kInjected || hr == E_OUTOFMEMORY || (hr == scenario.other && failed))
                << Hr{hr};
            EXPECT_HR(S_OK, scenario.again ? scenario.run() : S_OK);
            Configure();
            EXPECT_TRUE(Faults::Failed() != "memory" || std::string_view(scenario.name) != "frame");
            EXPECT_EQ(picture, Picture());
            EXPECT_EQ(held.value_or(Faults::Held()), Faults::Held());
            held = Faults::Held();
            EXPECT_EQ(references, ReferencesOf(m_transform.Get()));
            EXPECT_EQ(2u, ReferencesOf(m_in.Get()) + ReferencesOf(m_out.Get()));
            EXPECT_EQ(0u, m_site.references);
            EXPECT_EQ(nullptr, m_sheet.Page());
        }
        EXPECT_HR(S_OK, scenario.run()) << scenario.name;
        EXPECT_GE(failures - 1, scenario.least) << scenario.name;
        EXPECT_EQ(scenario.told.value_or(told), told) << scenario.name;
    }
    EXPECT_GE(drawing + 50, DrawingObjects()); // of more than fifty openings of each page
    m_store.Reset();
    m_control.Reset();
    m_transform.Reset();
    EXPECT_HR(S_OK, m_module.CanUnloadNow());
}

} // namespace
