// Flags, region, protected area, sensitivity, frame numbers and pages of the control interface.
#include "tests/support/Transform.h"

#include <array>
#include <limits>

namespace {

class Control : public TransformTest {
protected:
    INMFVDeinterlace* Object() { return TransformTest::Control(); }

    UINT32 Stored(REFGUID key) { return StoredNumber(Store(), key); }
};

// A property's functions.
template <typename Value>
using Getter = HRESULT (STDMETHODCALLTYPE INMFVDeinterlace::*)(Value*);
template <typename Value>
using Setter = HRESULT (STDMETHODCALLTYPE INMFVDeinterlace::*)(Value);

struct FlagRow {
    const char* name;
    Getter<VARIANT_BOOL> get;
    Setter<VARIANT_BOOL> put;
    const GUID* key; // null: not in the store
    VARIANT_BOOL whenOn;
};

#define FLAG(Name, Key, WhenOn)                                                                                        \
    { #Name, &INMFVDeinterlace::get_##Name, &INMFVDeinterlace::put_##Name, Key, WhenOn }

const FlagRow kFlags[] = {
    FLAG(Enabled, &NMFV_DEINTERLACE_ENABLED, -1),
    FLAG(Even, &NMFV_DEINTERLACE_EVEN, -1),
    FLAG(Resize, &NMFV_DEINTERLACE_RESIZE, -1),
    FLAG(StartWithEvenFrame, &NMFV_DEINTERLACE_START_WITH_EVEN_FRAME, -1),
    FLAG(MergeFields, &NMFV_DEINTERLACE_MERGE_FIELDS, -1),
    FLAG(EnableROI, &NMFV_DEINTERLACE_ENABLE_ROI, 1),
    FLAG(EnableGlobalPattern, &NMFV_DEINTERLACE_ENABLE_GLOBAL_PATTERN, 1),
    FLAG(EnableProtectedArea, &NMFV_DEINTERLACE_ENABLE_PROTECTED_AREA, 1),
    FLAG(AutoDeinterlace, &NMFV_DEINTERLACE_AUTO_DEINTERLACE, 1),
    FLAG(DeinterlaceSettingsImportState, nullptr, -1),
    FLAG(ROISettingsImportState, nullptr, -1),
};

TEST_F(Control, FlagsReportInTheirForm) {
    for (const FlagRow& row : kFlags) {
        SCOPED_TRACE(row.name);
        EXPECT_HR(E_POINTER, (Object()->*row.get)(nullptr));
        for (const VARIANT_BOOL written : {VARIANT_BOOL{-1}, VARIANT_BOOL{0}, VARIANT_BOOL{1}, VARIANT_BOOL{77}}) {
            EXPECT_HR(S_OK, (Object()->*row.put)(written));
            EXPECT_EQ(written ? row.whenOn : 0, Get(row.get));
            if (row.key) {
                EXPECT_EQ(written ? 1u : 0u, Stored(*row.key));
            }
        }
        if (row.key) { // of another type, and missing, it reads as 0
            Store()->SetString(*row.key, L"1");
            EXPECT_EQ(0, Get(row.get));
            Store()->DeleteItem(*row.key);
            EXPECT_EQ(0, Get(row.get));
        }
    }
    Object()->put_DeinterlaceSettingsImportState(VARIANT_FALSE); // one member each
    EXPECT_TRUE(Get(&INMFVDeinterlace::get_ROISettingsImportState));
}

TEST_F(Control, RegionIsClampedAgainstTheFrame) {
    EXPECT_HR(S_OK, Object()->put_ROIRight(2000));
    EXPECT_EQ(1600, Get(&INMFVDeinterlace::get_ROIRight)); // nothing negotiated yet
    SetTypes(MFVideoFormat_YUY2, 720, 480);
    constexpr struct {
        Setter<LONG> put;
        Getter<LONG> get;
        LONG written, read;
    } kSteps[] = {
        {&INMFVDeinterlace::put_ROIRight, &INMFVDeinterlace::get_ROIRight, 2000, 720},
        {&INMFVDeinterlace::put_ROIBottom, &INMFVDeinterlace::get_ROIBottom, 100, 100},
        {&INMFVDeinterlace::put_ROIBottom, &INMFVDeinterlace::get_ROIBottom, 900, 900},
        {&INMFVDeinterlace::put_ROIBottom, &INMFVDeinterlace::get_ROIBottom, 200, 480},
        {&INMFVDeinterlace::put_ROITop, &INMFVDeinterlace::get_ROITop, 500, 500},
        {&INMFVDeinterlace::put_ROITop, &INMFVDeinterlace::get_ROITop, 3, 479},
        {&INMFVDeinterlace::put_ROILeft, &INMFVDeinterlace::get_ROILeft, -5, 0},
        {&INMFVDeinterlace::put_ROILeft, &INMFVDeinterlace::get_ROILeft, 1000, 719},
    };
    for (const auto& step : kSteps) {
        EXPECT_HR(S_OK, (Object()->*step.put)(step.written));
        EXPECT_EQ(step.read, Get(step.get)) << "step " << &step - kSteps;
    }
    Store()->SetUINT32(NMFV_DEINTERLACE_ROI_LEFT, 0xFFFFFFFF); // whatever a client wrote there
    EXPECT_EQ(-1, Get(&INMFVDeinterlace::get_ROILeft));
    EXPECT_HR(S_OK, Object()->put_ROIRight(5)); // 5 is not above 0xFFFFFFFF: one after it
    EXPECT_EQ(0u, Stored(NMFV_DEINTERLACE_ROI_RIGHT));
}

TEST_F(Control, ProtectedAreaRightIsLeft) {
    SetTypes(MFVideoFormat_YUY2, 720, 576);
    EXPECT_HR(S_OK, Object()->SetProtectedAreaParams(10, 200, 20, 100));
    LONG left = 0, right = 0, top = 0, bottom = 0;
    EXPECT_HR(S_OK, Object()->GetProtectedAreaParams(&left, &right, &top, &bottom));
    EXPECT_EQ((std::array{10l, 10l, 20l, 100l}), (std::array{left, right, top, bottom}));
    EXPECT_EQ(200u, Stored(NMFV_DEINTERLACE_PROTECTED_RIGHT));

    EXPECT_HR(S_OK, Object()->GetProtectedAreaParams(nullptr, nullptr, nullptr, nullptr));
    EXPECT_HR(S_OK, Object()->GetProtectedAreaParams(nullptr, nullptr, nullptr, &bottom));

    EXPECT_HR(S_OK, Object()->SetProtectedAreaParams(-1, 5000, -1, -1)); // kept, limited, kept, kept
    EXPECT_EQ(10u, Stored(NMFV_DEINTERLACE_PROTECTED_LEFT));
    EXPECT_EQ(720u, Stored(NMFV_DEINTERLACE_PROTECTED_RIGHT));
    EXPECT_EQ(20u, Stored(NMFV_DEINTERLACE_PROTECTED_TOP));
    EXPECT_EQ(100u, Stored(NMFV_DEINTERLACE_PROTECTED_BOTTOM));
    EXPECT_HR(S_OK, Object()->SetProtectedAreaParams(300, 50, -7, 60));
    EXPECT_EQ(49u, Stored(NMFV_DEINTERLACE_PROTECTED_LEFT));
    EXPECT_EQ(0u, Stored(NMFV_DEINTERLACE_PROTECTED_TOP));
}

TEST_F(Control, SensitivityHasItsRange) {
    constexpr double kNone = std::numeric_limits<double>::quiet_NaN(),
                     kInfinite = std::numeric_limits<double>::infinity();
    for (const double value : {8.0, 0.001, 1.5}) {
        EXPECT_HR(S_OK, Object()->put_AutoDeinterlaceSensitivity(value));
        EXPECT_EQ(value, Get(&INMFVDeinterlace::get_AutoDeinterlaceSensitivity));
    }
    for (const double value : {8.5, 0.0005, -1.0, kNone, kInfinite}) {
        EXPECT_HR(E_INVALIDARG, Object()->put_AutoDeinterlaceSensitivity(value)) << value;
        EXPECT_EQ(1.5, Get(&INMFVDeinterlace::get_AutoDeinterlaceSensitivity));
    }
    EXPECT_HR(E_POINTER, Object()->get_AutoDeinterlaceSensitivity(nullptr));
    Store()->SetUINT32(NMFV_DEINTERLACE_AUTO_SENSITIVITY, 3);
    EXPECT_EQ(0.0, Get(&INMFVDeinterlace::get_AutoDeinterlaceSensitivity));
}

TEST_F(Control, FrameNumbersComeFromTheInputType) {
    const auto expect = [this](LONG width, LONG height, LONG bits) {
        EXPECT_EQ(width, Get(&INMFVDeinterlace::get_InWidth));
        EXPECT_EQ(width, Get(&INMFVDeinterlace::get_OutWidth));
        EXPECT_EQ(height, Get(&INMFVDeinterlace::get_InHeight));
        EXPECT_EQ(height, Get(&INMFVDeinterlace::get_OutHeight));
        EXPECT_EQ(bits, Get(&INMFVDeinterlace::get_InBits));
        EXPECT_EQ(bits, Get(&INMFVDeinterlace::get_OutBits));
    };
    expect(1600, 1600, 0);
    EXPECT_EQ(30.0, Get(&INMFVDeinterlace::get_FrameRate));
    SetTypes(MFVideoFormat_RGB24, 721, 33, 50);
    Object()->put_Resize(VARIANT_TRUE);
    expect(721, 33, 24);
    for (const Getter<LONG> get :
         {&INMFVDeinterlace::get_InWidth, &INMFVDeinterlace::get_InHeight, &INMFVDeinterlace::get_OutWidth,
          &INMFVDeinterlace::get_OutHeight, &INMFVDeinterlace::get_InBits, &INMFVDeinterlace::get_OutBits}) {
        EXPECT_HR(E_POINTER, (Object()->*get)(nullptr));
    }
    EXPECT_EQ(50.0, Get(&INMFVDeinterlace::get_FrameRate));
    for (const double refused : {0.0, -25.0, std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_HR(E_INVALIDARG, Object()->put_FrameRate(refused));
    }
    EXPECT_HR(S_OK, Object()->put_FrameRate(0.05));
    EXPECT_HR(E_POINTER, Object()->get_FrameRate(nullptr));
    EXPECT_EQ(0.05, Get(&INMFVDeinterlace::get_FrameRate));
}

TEST_F(Control, PagesInTheirOrder) {
    CComRef<ISpecifyPropertyPages> pages;
    ASSERT_HR(S_OK, Object()->QueryInterface(IID_ISpecifyPropertyPages, pages.PutVoid()));
    EXPECT_HR(E_POINTER, pages->GetPages(nullptr));
    CAUUID list{};
    ASSERT_HR(S_OK, pages->GetPages(&list));
    ASSERT_EQ(3u, list.cElems);
    EXPECT_TRUE(list.pElems[0] == CLSID_NMFVDeinterlaceSettingsPage);
    EXPECT_TRUE(list.pElems[1] == CLSID_NMFVDeinterlaceRoiPage);
    EXPECT_TRUE(list.pElems[2] == CLSID_NMFVDeinterlaceAboutPage);
    CoTaskMemFree(list.pElems);
}

} // namespace
