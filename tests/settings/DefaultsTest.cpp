// The default sets and how they are written.
#include "tests/support/Transform.h"

namespace {

class Defaults : public TransformTest {};

TEST_F(Defaults, ResetLeaves23Items) {
    Control()->SetGlobalPattern(5, 6, 7, VARIANT_FALSE);
    EXPECT_EQ(24u, ItemsOf(Store()));
    for (const LONG level : {NMVDeinterlace_APILEVEL_1, NMVDeinterlace_APILEVEL_2}) {
        EXPECT_HR(S_OK, Control()->ResetToDefaultsEx(level));
        EXPECT_EQ(23u, ItemsOf(Store()));
        LONG preamble = 9, ignore = 9, deinterlace = 9;
        VARIANT_BOOL deintPreamble = 9;
        EXPECT_HR(S_OK, Control()->GetGlobalPattern(&preamble, &ignore, &deinterlace, &deintPreamble));
        EXPECT_EQ(0, preamble);
        EXPECT_EQ(1, ignore);
        EXPECT_EQ(1, deinterlace);
        EXPECT_EQ(1, deintPreamble);
        EXPECT_EQ(static_cast<UINT32>(level), StoredNumber(Store(), NMFV_DEINTERLACE_MERGE_FIELDS));
        EXPECT_EQ(static_cast<UINT32>(level), StoredNumber(Store(), NMFV_DEINTERLACE_AUTO_DEINTERLACE));
    }
}

TEST_F(Defaults, OtherLevelsAreRefused) {
    Control()->put_ROIRight(77);
    for (const LONG level : {2l, -1l, LONG_MIN, LONG_MAX}) {
        EXPECT_HR(E_INVALIDARG, Control()->ResetToDefaultsEx(level));
    }
    EXPECT_EQ(77, Get(&INMFVDeinterlace::get_ROIRight));
}

TEST_F(Defaults, ResetLeavesWhatIsNotInTheStore) {
    Control()->AddSegment(0);
    Control()->put_FrameRate(12.5);
    Control()->put_ROISettingsImportState(VARIANT_TRUE);
    EXPECT_HR(S_OK, Control()->ResetToDefaults());
    EXPECT_EQ(VARIANT_FALSE, Get(&INMFVDeinterlace::get_MergeFields)); // the plain reset is that of level 1
    EXPECT_EQ(1, Get(&INMFVDeinterlace::get_SegmentsCount));
    EXPECT_EQ(12.5, Get(&INMFVDeinterlace::get_FrameRate));
    EXPECT_EQ(VARIANT_TRUE, Get(&INMFVDeinterlace::get_ROISettingsImportState));
}

} // namespace
