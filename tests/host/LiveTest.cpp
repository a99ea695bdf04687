// What the live window shows and does, without the window.
#include "host/player/FrameRing.h"
#include "host/player/HoldHistory.h"
#include "host/player/LiveModel.h"
#include "host/player/LivePace.h"
#include "host/player/StatusText.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>

namespace host {
namespace {

TEST(LiveLayout, PicturesKeepTheirShapeInsideTheArea) {
    const PictureShape shapes[] = {{720, 576, {16, 15}}, {640, 360, {1, 1}}, {90, 160, {1, 1}}};
    for (const PictureShape& shape : shapes) {
        const double wanted = shape.width * shape.aspect.Value() / shape.height;
        for (const int width : {0, 30, 400, 2000}) {
            for (const int height : {0, 30, 300, 1500}) {
                const LiveLayout places = PlaceLive(width, height, 16, false);
                const Box left = FitInto(shape, places.room[0]);
                const Box right = FitInto(shape, places.room[1]);
                if (left.width == 0) {
                    EXPECT_TRUE(width <= 30 || height <= 30);
                    continue;
                }
                EXPECT_NEAR(left.width, left.height * wanted, 1 + wanted);
                EXPECT_TRUE(left.x >= 0 && left.x + left.width < right.x && right.x + right.width <= width);
                EXPECT_LT(left.y + left.height, places.slider.y);
                EXPECT_LE(places.status[1].y + 16, height);
            }
        }
        const Box whole = AreaFor(shape, 16, 5000, 5000);
        const LiveLayout places = PlaceLive(whole.width, whole.height, 16, false);
        EXPECT_EQ(FitInto(shape, places.room[0]).height, shape.height);
    }
}

TEST(LivePace, KeepsTheRateAndCatchesNothingUp) {
    CLivePace pace(25, 100);
    double now = 100;
    for (int i = 0; i < 50; ++i) {
        now += 0.01; // a frame's work
        now += pace.Next(now) / 1000.0;
    }
    EXPECT_NEAR(now, 102, 0.01);
    EXPECT_NEAR(pace.Measured(), 25, 1);
    EXPECT_EQ(pace.Next(now + 10), 0u);
    EXPECT_EQ(pace.Next(now + 10), 40u);
}

// 'n' is the time of a frame; the other letters are keys. A second has ten frames.
void Do(CLiveModel& model, char key) {
    struct Row {
        char key;
        LiveCommand command;
    };
    constexpr Row kRows[] = {{' ', LiveCommand::Pause},         {'<', LiveCommand::StepBack},
                             {'>', LiveCommand::StepForward},   {'-', LiveCommand::SecondBack},
                             {'+', LiveCommand::SecondForward}, {'H', LiveCommand::First},
                             {'E', LiveCommand::Last},          {'I', LiveCommand::MarkIn},
                             {'O', LiveCommand::MarkOut},       {'L', LiveCommand::Loop}};
    if (key == 'n') {
        return model.Playback().Advance();
    }
    model.Do(
        std::find_if(std::begin(kRows), std::end(kRows), [key](const Row& row) { return row.key == key; })->command);
}

TEST(LiveModel, KeysMoveThroughTheClip) {
    struct Case {
        const char* keys;
        std::uint64_t known; // frames; 0: nobody knows yet
        std::uint64_t found; // frames in the end
        std::uint64_t position;
    };
    constexpr Case kCases[] = {
        {"nnn", 40, 40, 3},       {"nn nn", 40, 40, 2}, // paused
        {"nn nn nn", 40, 40, 4},                        // and on again
        {">>><n", 40, 40, 2},                           // stepping pauses
        {"<", 40, 40, 0},         {"+-->", 40, 40, 1},          {"E>", 40, 40, 39},
        {"En", 40, 40, 0},                                                               // plays on from the beginning
        {"E", 0, 40, 39},                                                                // found out by reading
        {"+++++", 0, 40, 39},     {"+++ nnnnnnnnnn", 0, 40, 0}, {"+I>>O n", 40, 40, 10}, // loops from 10 to 12
        {"+I>>O <<", 40, 40, 10}, {"+I>>O Ln", 40, 40, 13},     {"+O-I n", 40, 40, 1},
        {"++I-O nn", 40, 40, 1}, // an end before the beginning: from the clip's
        {"+++IE nn", 0, 40, 31},
    };
    for (const Case& c : kCases) {
        CLiveModel model({64, 48, {1, 1}}, 10, c.known ? std::optional(c.known) : std::nullopt);
        for (const char* key = c.keys; *key; ++key) {
            Do(model, *key);
            if (c.known || model.Playback().Position() >= c.found) {
                model.Playback().EndAt(c.found);
            }
        }
        EXPECT_EQ(model.Playback().Position(), c.position) << c.keys;
    }
}

// However the frames are visited, each comes out as in one run; the transform's own counter is played by the hold.
TEST(HoldHistory, AnyOrderOfFramesGivesTheRunsPictures) {
    constexpr std::int32_t kHold = 10;
    std::mt19937 random(7);
    CHoldHistory history;
    std::vector<std::uint32_t> counts;
    for (std::uint32_t i = 0; i < 200; ++i) {
        counts.push_back(random() % 12 == 0 ? random() % 100 : 0);
        history.Add(i, counts.back());
    }
    CHoldMirror mirror;
    std::int32_t transform = 0;
    int restarts = 0;
    std::uint64_t frame = 0;
    for (int visit = 0; visit < 5000; ++visit) {
        const std::uint32_t threshold = visit / 500 * 10u; // the sensitivity moves
        frame = random() % 4 != 0 ? (frame + 1) % counts.size() : random() % counts.size();
        std::int32_t run = 0;
        bool wanted = false;
        for (std::uint64_t i = 0; i <= frame; ++i) {
            wanted = AdvanceHold(counts[i] > threshold, kHold, run);
        }
        const HoldStep step = mirror.Before(history.CounterBefore(frame, threshold, kHold), kHold);
        transform = step == HoldStep::None ? transform : step == HoldStep::Prime ? kHold : 0;
        restarts += step != HoldStep::None ? 1 : 0;
        const bool interlaced = counts[frame] > threshold;
        mirror.After(interlaced, kHold);
        ASSERT_EQ(AdvanceHold(interlaced, kHold, transform), wanted) << "visit " << visit << " frame " << frame;
    }
    EXPECT_LT(restarts, 2500);
}

TEST(FrameRing, KeepsTheLastFramesWithinItsMemory) {
    CFrameRing ring(100, 350);
    for (std::uint8_t i = 0; i < 5; ++i) {
        *ring.Put(i) = i;
        ring.Keep(i);
    }
    (void)ring.Put(5); // which could not be read
    for (std::uint64_t i = 0; i < 7; ++i) {
        EXPECT_EQ(ring.Find(i) != nullptr, i == 3 || i == 4) << i;
    }
    EXPECT_EQ(*ring.Find(4), 4);
}

// Both pictures of 320 x 240 in full size.
class LiveMouse : public testing::Test {
protected:
    LiveMouse() {
        const Box area = AreaFor({320, 240, {1, 1}}, 16, 5000, 5000);
        m_model.SetSize(area.width, area.height, 16);
        m_model.SetRegion({true, {80, 60, 240, 180}});
    }
    void Drag(int x, int y, int dx, int dy) {
        const View view = m_model.ViewOf(0);
        m_model.Press(view.WindowX(x), view.WindowY(y), false);
        m_model.SetRegion({}); // what the transform still has
        m_model.Move(view.WindowX(x) + dx, view.WindowY(y) + dy);
        m_model.Release();
    }

    CLiveModel m_model{{320, 240, {1, 1}}, 25, 100};
};

TEST_F(LiveMouse, DragsTheRegionInPictureCoordinates) {
    struct Case {
        LiveCommand zoom;
        int x, y, dx, dy;
        Area area;
    };
    constexpr LiveCommand k1 = LiveCommand::WholePicture;
    constexpr LiveCommand k2 = LiveCommand::Zoom2;
    constexpr Case kCases[] = {
        {k1, 160, 120, 10, -20, {90, 40, 250, 160}},    // the whole
        {k1, 160, 120, 999, 999, {160, 120, 320, 240}}, // not out of the picture
        {k1, 80, 120, -30, 7, {50, 60, 240, 180}},      // left
        {k1, 160, 60, 7, -30, {80, 30, 240, 180}},      // top
        {k1, 240, 180, 20, 30, {80, 60, 260, 210}},     // a corner
        {k1, 243, 57, 20, -30, {80, 30, 260, 180}},     // nearly the other one
        {k1, 240, 180, -999, -999, {80, 60, 81, 61}},   // something is left of it
        {k1, 20, 20, 10, 10, {}},                       // beside it
        {k2, 160, 120, 20, -40, {90, 40, 250, 160}},    // two pixels each
        {k2, 80, 120, -40, 0, {60, 60, 240, 180}},
    };
    for (const Case& c : kCases) {
        m_model.Do(c.zoom);
        m_model.SetRegion({true, {80, 60, 240, 180}});
        Drag(c.x, c.y, c.dx, c.dy);
        EXPECT_EQ(m_model.Region().area, c.area) << c.x << "," << c.y << " by " << c.dx << "," << c.dy;
        const bool moved = m_model.TakeRegion().has_value();
        EXPECT_EQ(moved, c.x != 20);
    }
}

TEST_F(LiveMouse, BothPicturesShowTheSamePart) {
    m_model.SetRegion({false, {}});
    m_model.Do(LiveCommand::Zoom4);
    for (const auto& [dx, dy] : {std::pair(0, 0), std::pair(-40, 20), std::pair(9999, 9999), std::pair(-9999, -9999)}) {
        const Box room = m_model.Layout().room[1];
        m_model.Press(room.x + 160, room.y + 120, false);
        m_model.Move(room.x + 160 + dx, room.y + 120 + dy);
        m_model.Release();
        const View before = m_model.ViewOf(0);
        const View after = m_model.ViewOf(1);
        EXPECT_EQ(before.source.x, after.source.x);
        EXPECT_EQ(before.source.y, after.source.y);
        EXPECT_EQ(before.shown.width, 4 * before.source.width);
        EXPECT_TRUE(before.source.x >= 0 && before.source.x + before.source.width <= 320);
        EXPECT_TRUE(before.source.y >= 0 && before.source.y + before.source.height <= 240);
        EXPECT_EQ(before.PictureX(before.WindowX(before.source.x + 7) + 3), before.source.x + 7);
    }
    EXPECT_EQ(m_model.ViewOf(0).source.x, 320 - m_model.ViewOf(0).source.width); // dragged to the left: the right end
}

TEST_F(LiveMouse, SliderAndDividerFollow) {
    const Box slider = m_model.Layout().slider;
    m_model.Press(slider.x + slider.width / 2, slider.y + 2, false);
    EXPECT_NEAR(static_cast<double>(m_model.Playback().Position()), 50, 1);
    m_model.Move(9999, 0);
    EXPECT_EQ(m_model.Playback().Position(), 99u);
    m_model.Release();
    m_model.SetRegion({false, {}});
    m_model.Do(LiveCommand::Split);
    const int at = m_model.DividerX();
    m_model.Press(at, m_model.ViewOf(0).shown.y + 5, false);
    m_model.Move(at + 30, 0);
    EXPECT_NEAR(m_model.DividerX(), at + 30, 1);
}

// The bar says what the detector says: a count is over the threshold's mark when the frame is interlaced.
TEST(CombScale, TheMarkDividesCleanFromInterlaced) {
    for (const double sensitivity : {0.001, 0.03, 1.0, 8.0}) {
        for (const std::uint32_t count : {0u, 20u, 599u, 20001u, 160001u, 300000u}) {
            const CombReading reading{count, static_cast<std::uint32_t>(20000 * sensitivity), 20000, sensitivity};
            EXPECT_EQ(PlaceOfCount(reading) > PlaceOnScale(sensitivity), count > reading.threshold)
                << count << " at " << sensitivity;
        }
    }
    EXPECT_LE(PlaceOnScale(16), 1);
}

TEST(StatusText, TellsCountThresholdVerdictAndHold) {
    CPlayback playback(250);
    LiveFrame frame{7, Mode::Auto, {1234, 500, 1000, 0.5}, true, 124, true};
    EXPECT_EQ(PlayText(frame, playback, 24.97), L"frame 7 of 250    25.0 frames a second");
    EXPECT_EQ(FrameText(frame),
              L"count 1234, threshold 500 at sensitivity 0.5: interlaced    hold: 124 frames    deinterlaced");
    playback.Step(9);
    playback.MarkIn();
    frame = {9, Mode::Off, {3, 8000, 1000, 8}, false, 0, false};
    EXPECT_EQ(PlayText(frame, playback, 25), L"frame 9 of 250    paused    loop 9 to the end");
    EXPECT_EQ(FrameText(frame),
              L"count 3, threshold 8000 at sensitivity 8: clean    not asked: off    passed unchanged");
    EXPECT_EQ(SeekText(3, playback), L"frame 3    reading on to 9");
}

} // namespace
} // namespace host
