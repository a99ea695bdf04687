// Flags, region, protected area, sensitivity, frame numbers and pages of the control interface.
#include "tests/support/Media.h"
#include "tests/support/Transform.h"

#include <limits>

namespace {

class Control : public TransformTest {
protected:
    INMFVDeinterlace* Object() { return TransformTest::Control(); }

    UINT32 Stored(REFGUID key) {
        UINT32 value = 0xDEAD;
        Store()->GetUINT32(key, &value);
        return value;
    }
};

using FlagGetter = HRESULT (STDMETHODCALLTYPE INMFVDeinterlace::*)(VARIANT_BOOL*);
using FlagSetter = HRESULT (STDMETHODCALLTYPE INMFVDeinterlace::*)(VARIANT_BOOL);

struct FlagRow {
    const char* name;
    FlagGetter get;
    FlagSetter put;
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
            VARIANT_BOOL read = 99;
            EXPECT_HR(S_OK, (Object()->*row.get)(&read));
            EXPECT_EQ(written ? row.whenOn : 0, read);
            if (row.key) {
                EXPECT_EQ(written ? 1u : 0u, Stored(*row.key));
            }
        }
        if (!row.key) {
            continue;
        }
        // A key of another type, and one that is missing, read as 0.
        Store()->SetString(*row.key, L"1");
        VARIANT_BOOL read = 99;
        EXPECT_HR(S_OK, (Object()->*row.get)(&read));
        EXPECT_EQ(0, read);
        Store()->DeleteItem(*row.key);
        EXPECT_HR(S_OK, (Object()->*row.get)(&read));
        EXPECT_EQ(0, read);
    }
}

// Two flags that shared a key, or getters wired to a neighbour's, would show here.
TEST_F(Control, FlagsAreIndependent) {
    for (const FlagRow& row : kFlags) {
        (Object()->*row.put)(VARIANT_FALSE);
    }
    for (const FlagRow& one : kFlags) {
        (Object()->*one.put)(VARIANT_TRUE);
        for (const FlagRow& other : kFlags) {
            VARIANT_BOOL value = 99;
            (Object()->*other.get)(&value);
            EXPECT_EQ(&one == &other, value != 0) << one.name << " and " << other.name;
        }
        (Object()->*one.put)(VARIANT_FALSE);
    }
}

TEST_F(Control, RegionIsClampedAgainstTheFrame) {
    LONG value = 0;
    EXPECT_HR(S_OK, Object()->put_ROIRight(2000));
    EXPECT_HR(S_OK, Object()->get_ROIRight(&value));
    EXPECT_EQ(1600, value); // nothing negotiated yet

    CComRef<IMFMediaType> type;
    MakeVideoType(MFVideoFormat_YUY2, 720, 480, type);
    ASSERT_HR(S_OK, Mft()->SetInputType(0, type.Get(), 0));
    Object()->put_ROIRight(2000);
    Object()->get_ROIRight(&value);
    EXPECT_EQ(720, value);

    Object()->put_ROIBottom(100);
    Object()->put_ROIBottom(900);
    Object()->get_ROIBottom(&value);
    EXPECT_EQ(900, value);
    Object()->put_ROIBottom(200);
    Object()->get_ROIBottom(&value);
    EXPECT_EQ(480, value);

    Object()->put_ROITop(500);
    Object()->get_ROITop(&value);
    EXPECT_EQ(500, value);
    Object()->put_ROITop(3);
    Object()->get_ROITop(&value);
    EXPECT_EQ(479, value);

    Object()->put_ROILeft(-5);
    Object()->get_ROILeft(&value);
    EXPECT_EQ(0, value);
    Object()->put_ROILeft(1000);
    Object()->get_ROILeft(&value);
    EXPECT_EQ(719, value);
}

TEST_F(Control, RegionReportsWhateverTheStoreHolds) {
    Store()->SetUINT32(NMFV_DEINTERLACE_ROI_LEFT, 0xFFFFFFFF);
    LONG value = 0;
    EXPECT_HR(S_OK, Object()->get_ROILeft(&value));
    EXPECT_EQ(-1, value);
    EXPECT_HR(S_OK, Object()->put_ROIRight(5)); // 5 is not above 0xFFFFFFFF: one after it
    EXPECT_EQ(0u, Stored(NMFV_DEINTERLACE_ROI_RIGHT));
}

TEST_F(Control, ProtectedAreaRightIsLeft) {
    CComRef<IMFMediaType> type;
    MakeVideoType(MFVideoFormat_YUY2, 720, 576, type);
    ASSERT_HR(S_OK, Mft()->SetInputType(0, type.Get(), 0));
    EXPECT_HR(S_OK, Object()->SetProtectedAreaParams(10, 200, 20, 100));
    LONG left = 0, right = 0, top = 0, bottom = 0;
    EXPECT_HR(S_OK, Object()->GetProtectedAreaParams(&left, &right, &top, &bottom));
    EXPECT_EQ(10, left);
    EXPECT_EQ(10, right);
    EXPECT_EQ(20, top);
    EXPECT_EQ(100, bottom);
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
    constexpr struct {
        double value;
        HRESULT result;
    } kRows[] = {{8.0, S_OK},
                 {0.001, S_OK},
                 {1.5, S_OK},
                 {8.5, E_INVALIDARG},
                 {0.0005, E_INVALIDARG},
                 {-1.0, E_INVALIDARG},
                 {std::numeric_limits<double>::quiet_NaN(), E_INVALIDARG},
                 {std::numeric_limits<double>::infinity(), E_INVALIDARG}};
    double last = 1.0, read = 0;
    for (const auto& row : kRows) {
        EXPECT_HR(row.result, Object()->put_AutoDeinterlaceSensitivity(row.value)) << row.value;
        last = row.result == S_OK ? row.value : last;
        EXPECT_HR(S_OK, Object()->get_AutoDeinterlaceSensitivity(&read));
        EXPECT_EQ(last, read);
    }
    EXPECT_HR(E_POINTER, Object()->get_AutoDeinterlaceSensitivity(nullptr));
    Store()->SetUINT32(NMFV_DEINTERLACE_AUTO_SENSITIVITY, 3);
    EXPECT_HR(S_OK, Object()->get_AutoDeinterlaceSensitivity(&read));
    EXPECT_EQ(0.0, read);
}

TEST_F(Control, FrameNumbersComeFromTheInputType) {
    using Getter = HRESULT (STDMETHODCALLTYPE INMFVDeinterlace::*)(LONG*);
    constexpr Getter kWidths[] = {&INMFVDeinterlace::get_InWidth, &INMFVDeinterlace::get_OutWidth};
    constexpr Getter kHeights[] = {&INMFVDeinterlace::get_InHeight, &INMFVDeinterlace::get_OutHeight};
    constexpr Getter kBits[] = {&INMFVDeinterlace::get_InBits, &INMFVDeinterlace::get_OutBits};
    const auto expect = [&](LONG width, LONG height, LONG bits) {
        for (int i = 0; i < 2; ++i) {
            LONG value = 0;
            EXPECT_HR(S_OK, (Object()->*kWidths[i])(&value));
            EXPECT_EQ(width, value);
            EXPECT_HR(S_OK, (Object()->*kHeights[i])(&value));
            EXPECT_EQ(height, value);
            EXPECT_HR(S_OK, (Object()->*kBits[i])(&value));
            EXPECT_EQ(bits, value);
        }
    };
    expect(1600, 1600, 0);
    CComRef<IMFMediaType> type;
    MakeVideoType(MFVideoFormat_RGB24, 721, 33, type, 50);
    ASSERT_HR(S_OK, Mft()->SetInputType(0, type.Get(), 0));
    Object()->put_Resize(VARIANT_TRUE);
    expect(721, 33, 24);
    double rate = 0;
    EXPECT_HR(S_OK, Object()->get_FrameRate(&rate));
    EXPECT_EQ(50.0, rate);
}

TEST_F(Control, FrameRateIsPositive) {
    double rate = 0;
    EXPECT_HR(S_OK, Object()->get_FrameRate(&rate));
    EXPECT_EQ(30.0, rate);
    for (const double refused : {0.0, -25.0, std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_HR(E_INVALIDARG, Object()->put_FrameRate(refused));
    }
    EXPECT_HR(S_OK, Object()->put_FrameRate(0.05));
    EXPECT_HR(E_POINTER, Object()->get_FrameRate(nullptr));
    Object()->get_FrameRate(&rate);
    EXPECT_EQ(0.05, rate);
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
