// The frame driver with real settings: what it reads, when it deinterlaces, and that it stays within the frames.
#include "engine/DeinterlaceFilter.h"
#include "engine/detector/InterlaceDetector.h"
#include "settings/SettingsDefaults.h"
#include "tests/support/CallHook.h"
#include "tests/support/ComChecks.h"
#include "tests/support/OraclePixels.h"
#include "tests/support/RandomBytes.h"

#include "NMFVDeinterlaceKeys.h"

#include <algorithm>
#include <array>
#include <vector>

#include <mfapi.h>

namespace {

// The engine without the transform around it, with a frame of any depth.
class BareFilter : public CDeinterlaceFilter {
public:
    BareFilter() {
        MFCreateAttributes(m_pStore.Put(), 24);
        ResetSettings(Store(), NMVDeinterlace_APILEVEL_1);
    }
    STDMETHODIMP QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    STDMETHODIMP_(ULONG) AddRef() override { return 1; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    STDMETHODIMP ResetToDefaultsEx(LONG level) override { return ResetSettings(Store(), level); }
    STDMETHODIMP LoadAttributes() override { return E_NOTIMPL; }
    STDMETHODIMP SaveAttributes() override { return E_NOTIMPL; }

    void SetFormat(INT32 width, INT32 height, INT32 bits) {
        m_lWidth = width;
        m_lHeight = height;
        m_lBitCount = bits;
        m_lStride = StrideBytes(bits, width);
        m_lBufferSize = FrameBytes(m_lStride, height);
    }

    using CDeinterlaceFilter::EndStreaming;
    using CDeinterlaceFilter::m_bGrayPalette;
    using CDeinterlaceFilter::m_bPacked422;
    using CDeinterlaceFilter::m_bTopDown;
    using CDeinterlaceFilter::m_pStore;
    using CDeinterlaceFilter::m_rtAvgTimePerFrame;
    using CDeinterlaceFilter::Shape;
    using CDeinterlaceFilter::ShouldDeinterlace;
    using CDeinterlaceFilter::StartStreaming;
    using CDeinterlaceFilter::Store;
    using CDeinterlaceFilter::Transform;
};

// In front of the filter's store while it lives.
class StoreHook {
public:
    explicit StoreHook(BareFilter& filter)
        : m_filter(filter)
        , m_store(filter.Store()) {
        filter.m_pStore.Share(&m_store);
    }
    ~StoreHook() { m_filter.m_pStore.Share(m_store.Inner()); }
    StoreHook(const StoreHook&) = delete;
    StoreHook& operator=(const StoreHook&) = delete;

    CallHook& Calls() { return m_store.hook; }

private:
    BareFilter& m_filter;
    HookedStore m_store;
};

const GUID* const kRegionEdges[] = {&NMFV_DEINTERLACE_ROI_LEFT, &NMFV_DEINTERLACE_ROI_RIGHT, &NMFV_DEINTERLACE_ROI_TOP,
                                    &NMFV_DEINTERLACE_ROI_BOTTOM};

class Filter : public testing::Test {
protected:
    void SetFormat(INT32 width, INT32 height, INT32 bits) {
        m_filter.SetFormat(width, height, bits);
        const auto bytes = static_cast<std::size_t>(m_filter.Shape().Bytes());
        m_input.resize(bytes);
        m_random.Fill(m_input);
        m_output.assign(bytes, 0xA5);
    }

    void Set(REFGUID key, INT32 value) { m_filter.Store()->SetUINT32(key, static_cast<UINT32>(value)); }

    UINT32 Get(REFGUID key) {
        UINT32 value = 0xDEAD;
        m_filter.Store()->GetUINT32(key, &value);
        return value;
    }

    // Left, right, top, bottom.
    void SetRegion(std::array<INT32, 4> edges) {
        for (std::size_t i = 0; i < edges.size(); ++i) {
            Set(*kRegionEdges[i], edges[i]);
        }
    }

    HRESULT Transform() { return m_filter.Transform(m_input.data(), m_output.data()); }

    void ExpectByTheRules() {
        const std::vector<BYTE> expected = Expected(m_output);
        EXPECT_HR(S_OK, Transform());
        EXPECT_EQ(expected, m_output);
    }

    // What automatic mode does with the input frame, whose rows have no padding.
    bool Deinterlaces() {
        Set(NMFV_DEINTERLACE_AUTO_DEINTERLACE, 1);
        EXPECT_HR(S_OK, Transform());
        const bool changed = m_output != m_input;
        EXPECT_TRUE(!changed || m_output == Expected(m_output));
        return changed;
    }

    // The output that the rules give for the settings in the store, over what the output held before.
    std::vector<BYTE> Expected(std::vector<BYTE> before) {
        const FrameShape shape = m_filter.Shape();
        OracleOptions options;
        options.even = Get(NMFV_DEINTERLACE_EVEN) != 0;
        options.merge = Get(NMFV_DEINTERLACE_MERGE_FIELDS) != 0;
        options.averaging = shape.bits != 8 || m_filter.m_bGrayPalette;
        options.useRegion = Get(NMFV_DEINTERLACE_ENABLE_ROI) != 0;
        options.left = static_cast<INT32>(Get(NMFV_DEINTERLACE_ROI_LEFT));
        options.top = static_cast<INT32>(Get(NMFV_DEINTERLACE_ROI_TOP));
        options.right = static_cast<INT32>(Get(NMFV_DEINTERLACE_ROI_RIGHT));
        options.bottom = static_cast<INT32>(Get(NMFV_DEINTERLACE_ROI_BOTTOM));
        const OracleFrame frame{shape.width, shape.height, shape.bits, shape.topDown};
        OracleDeinterlace(frame, options, m_input.data(), before.data());
        return before;
    }

    // Rows of black and white in turn, `height` rows each: combed when 1.
    void Stripes(int height) {
        const FrameShape shape = m_filter.Shape();
        for (INT32 y = 0; y < shape.height; ++y) {
            std::fill_n(m_input.begin() + y * shape.stride, shape.stride, BYTE(y / height % 2 ? 255 : 0));
        }
    }

    BareFilter m_filter;
    RandomBytes m_random{TestSeed()};
    std::vector<BYTE> m_input, m_output;
};

TEST_F(Filter, DepthsAndSettings) {
    for (const INT32 bits : {8, 16, 24, 32}) {
        for (int settings = 0; settings < 32; ++settings) {
            SCOPED_TRACE(testing::Message() << bits << " bits, settings " << settings);
            SetFormat(13, 7, bits);
            m_filter.m_bGrayPalette = settings & 1;
            m_filter.m_bTopDown = static_cast<INT16>(settings >> 1 & 1);
            Set(NMFV_DEINTERLACE_EVEN, settings >> 2 & 1);
            Set(NMFV_DEINTERLACE_MERGE_FIELDS, settings >> 3 & 1);
            Set(NMFV_DEINTERLACE_ENABLE_ROI, settings >> 4 & 1);
            SetRegion({5, 10, 1, 6});
            ExpectByTheRules();
        }
    }
}

TEST_F(Filter, OffCopiesPaddingToo) {
    for (const INT32 bits : {8, 24}) {
        SetFormat(13, 5, bits);
        bits == 8 ? Set(NMFV_DEINTERLACE_ENABLED, 0)
                  : (void)m_filter.Store()->DeleteItem(NMFV_DEINTERLACE_ENABLED); // unreadable counts as off
        EXPECT_HR(S_OK, Transform());
        EXPECT_EQ(m_input, m_output);
    }
}

// Also for a client that never announces its stream, nor its frame rate.
TEST_F(Filter, HoldLastsFiveSecondsOfFrames) {
    SetFormat(64, 48, 24);
    for (const auto& [timePerFrame, hold] : {std::pair{0, 150}, {400'000, 125}}) {
        m_filter.m_rtAvgTimePerFrame = timePerFrame;
        EXPECT_TRUE(!timePerFrame || m_filter.StartStreaming() == S_OK);
        Stripes(2);
        EXPECT_FALSE(Deinterlaces()); // nothing before the first positive frame
        Stripes(1);
        EXPECT_TRUE(Deinterlaces());
        Stripes(2);
        for (int i = 1; i < hold; ++i) {
            EXPECT_TRUE(Deinterlaces()) << i;
        }
        EXPECT_FALSE(Deinterlaces());
    }
    Stripes(1);
    EXPECT_TRUE(Deinterlaces());
    Stripes(2);
    m_filter.EndStreaming();
    EXPECT_FALSE(Deinterlaces()); // the end of the stream ends the hold
}

TEST_F(Filter, QueryAnswersAsAutomaticModeDoes) {
    BareFilter asked;
    asked.m_pStore.Share(m_filter.Store());
    asked.SetFormat(64, 48, 24);
    SetFormat(64, 48, 24);
    asked.m_rtAvgTimePerFrame = m_filter.m_rtAvgTimePerFrame = 10'000'000; // a hold of five frames
    ASSERT_HR(S_OK, asked.StartStreaming());
    ASSERT_HR(S_OK, m_filter.StartStreaming());
    for (const int stripes : {2, 1, 2, 2, 2, 2, 2, 2, 1, 2, 1, 1}) {
        Stripes(stripes);
        EXPECT_EQ(Deinterlaces(), asked.ShouldDeinterlace(m_input.data())) << stripes;
    }
}

TEST_F(Filter, SensitivityDecides) {
    SetFormat(64, 48, 24);
    m_random.Fill(m_input);
    const CombScan scan = ScanFrame(m_input.data(), 64, 48, 24, nullptr, 1.0);
    ASSERT_GT(scan.count, 0u);
    const double limit = static_cast<double>(scan.count) / scan.threshold;
    m_filter.Store()->SetDouble(NMFV_DEINTERLACE_AUTO_SENSITIVITY, limit * 1.01);
    EXPECT_FALSE(Deinterlaces());
    m_filter.Store()->SetDouble(NMFV_DEINTERLACE_AUTO_SENSITIVITY, limit * 0.99);
    ASSERT_HR(S_OK, m_filter.StartStreaming());
    EXPECT_TRUE(Deinterlaces());
    m_filter.Store()->DeleteItem(NMFV_DEINTERLACE_AUTO_SENSITIVITY); // unreadable: one position is enough
    EXPECT_TRUE(Deinterlaces());
}

TEST_F(Filter, EightBitFramesHaveNoColours) {
    SetFormat(64, 48, 8);
    Stripes(1);
    EXPECT_FALSE(Deinterlaces());
}

TEST_F(Filter, StartLimitsTheRegion) {
    SetFormat(720, 480, 16);
    constexpr struct {
        std::array<INT32, 4> set;
        std::array<UINT32, 4> left;
    } kRows[] = {{{10, 2000, 20, 3000}, {10, 720, 20, 480}},
                 {{720, 2000, 480, 481}, {719, 720, 479, 480}},
                 {{900, 720, 500, 480}, {900, 720, 500, 480}}, // nothing is done while right and bottom are within
                 {{-1, -1, -7, -7}, {719, 720, 479, 480}}};    // as unsigned numbers
    for (const auto& row : kRows) {
        SetRegion(row.set);
        EXPECT_HR(S_OK, m_filter.StartStreaming());
        for (std::size_t i = 0; i < row.left.size(); ++i) {
            EXPECT_EQ(row.left[i], Get(*kRegionEdges[i])) << "row " << &row - kRows << " edge " << i;
        }
    }
    SetFormat(0, 0, 16);
    EXPECT_HR(E_UNEXPECTED, m_filter.StartStreaming());
    m_filter.SetFormat(16, -8, 16);
    EXPECT_HR(E_UNEXPECTED, m_filter.StartStreaming());
    m_filter.SetFormat(65536, 16384, 16); // 2 GiB: the 32-bit size overflows to a negative number
    EXPECT_HR(E_OUTOFMEMORY, m_filter.StartStreaming());
}

// A frame that is processed meanwhile sees the settings change in the order that clients know.
TEST_F(Filter, SettingsOfSeveralKeysAreWrittenInTheirOrder) {
    std::vector<const GUID*> written;
    StoreHook hook(m_filter);
    hook.Calls().check = [&](const std::string& method, const GUID* key) {
        EXPECT_EQ("SetUINT32", method);
        return written.push_back(key), S_OK;
    };
    m_filter.SetProtectedAreaParams(1, 2, 3, 4);
    m_filter.SetGlobalPattern(5, 6, 7, VARIANT_TRUE);
    EXPECT_EQ((std::vector<const GUID*>{
                  &NMFV_DEINTERLACE_PROTECTED_LEFT, &NMFV_DEINTERLACE_PROTECTED_RIGHT, &NMFV_DEINTERLACE_PROTECTED_TOP,
                  &NMFV_DEINTERLACE_PROTECTED_BOTTOM, &NMFV_DEINTERLACE_PATTERN_PREAMBLE_FRAMES,
                  &NMFV_DEINTERLACE_PATTERN_NO_DEINTERLACE_FRAMES, &NMFV_DEINTERLACE_PATTERN_DEINTERLACE_FRAMES,
                  &NMFV_DEINTERLACE_PATTERN_DEINT_PREAMBLE}),
              written);
}

TEST_F(Filter, ProtectedAreaHasNoWidth) {
    for (const INT32 bits : {16, 24}) {
        SetFormat(16, 8, bits);
        m_filter.m_bPacked422 = bits == 16;
        Set(NMFV_DEINTERLACE_ENABLE_PROTECTED_AREA, 1);
        m_filter.SetProtectedAreaParams(2, 10, 1, 7);
        ASSERT_HR(S_OK, m_filter.StartStreaming());
        ExpectByTheRules();

        // Once the second reading of the left edge fails, the area is as wide as it is far from the left.
        const std::vector<BYTE> expected = m_output;
        int readings = 0;
        StoreHook hook(m_filter);
        hook.Calls().check = [&](const std::string& method, const GUID* key) {
            const bool left = method == "GetUINT32" && *key == NMFV_DEINTERLACE_PROTECTED_LEFT;
            return left && ++readings % 2 == 0 ? E_FAIL : S_OK;
        };
        EXPECT_HR(S_OK, Transform());
        EXPECT_NE(expected, m_output);
    }
}

// Before the stream starts, after it ends, and when the frame has outgrown the buffer, the area is simply not kept.
TEST_F(Filter, ProtectedAreaNeedsItsBuffer) {
    Set(NMFV_DEINTERLACE_ENABLE_PROTECTED_AREA, 1);
    SetFormat(16, 8, 24);
    ExpectByTheRules();
    ASSERT_HR(S_OK, m_filter.StartStreaming());
    ExpectByTheRules();
    SetFormat(160, 80, 24);
    ExpectByTheRules();
    m_filter.EndStreaming();
    ExpectByTheRules();
}

// One reading of each setting per frame, and none that the frame doesn't need; the second look at the protected area's
// switch is the contract's. In order: the frame that begins the hold, one within it and the last of it.
TEST_F(Filter, ReadsEachSettingOnce) {
    constexpr struct {
        const char* name;
        bool enabled, automatic, region, protectedArea, combed;
        int numbers, doubles;
    } kFrames[] = {
        {"off", false, true, true, false, true, 2, 0},
        {"always", true, false, false, false, true, 6, 0},
        {"always, in a region", true, false, true, false, true, 10, 0},
        {"automatic, clean", true, true, true, false, false, 3, 1},
        {"automatic, combed", true, true, true, false, true, 10, 1},
        {"automatic, the hold runs, 4", true, true, true, false, false, 10, 1},
        {"automatic, the hold runs, 3", true, true, true, false, false, 10, 1},
        {"automatic, the hold runs, 2", true, true, true, false, false, 10, 1},
        {"automatic, the hold runs, 1", true, true, true, false, false, 10, 1},
        {"automatic, the hold ends", true, true, true, false, false, 3, 1},
        {"protected area", true, false, false, true, true, 11, 0}, // its switch and its left edge twice
    };
    SetFormat(16, 8, 24);
    m_filter.m_rtAvgTimePerFrame = 10'000'000; // a hold of five frames
    ASSERT_HR(S_OK, m_filter.StartStreaming());
    for (const auto& frame : kFrames) {
        Set(NMFV_DEINTERLACE_ENABLED, frame.enabled);
        Set(NMFV_DEINTERLACE_AUTO_DEINTERLACE, frame.automatic);
        Set(NMFV_DEINTERLACE_ENABLE_ROI, frame.region);
        Set(NMFV_DEINTERLACE_ENABLE_PROTECTED_AREA, frame.protectedArea);
        Stripes(frame.combed ? 1 : 2);
        StoreHook hook(m_filter);
        EXPECT_HR(S_OK, Transform());
        EXPECT_EQ(frame.numbers, hook.Calls().calls["GetUINT32"]) << frame.name;
        EXPECT_EQ(frame.doubles, hook.Calls().calls["GetDouble"]) << frame.name;
        EXPECT_EQ(0, hook.Calls().calls["SetUINT32"]) << frame.name;
    }
}

} // namespace
