// Where the live window puts its pictures, and when it shows the next.
#include "host/picture/LivePace.h"
#include "host/picture/SideBySide.h"

#include <gtest/gtest.h>

namespace host {
namespace {

TEST(SideBySide, PicturesKeepTheirShapeInsideTheArea) {
    const PictureShape shapes[] = {{720, 576, {16, 15}}, {640, 360, {1, 1}}, {90, 160, {1, 1}}};
    for (const PictureShape& shape : shapes) {
        const double wanted = shape.width * shape.aspect.Value() / shape.height;
        for (const int width : {0, 30, 400, 2000}) {
            for (const int height : {0, 30, 300, 1500}) {
                const SideBySide places = PlaceSideBySide(width, height, 16, shape);
                const Box& left = places.picture[0];
                const Box& right = places.picture[1];
                if (left.width == 0) {
                    EXPECT_TRUE(width <= 30 || height <= 30);
                    continue;
                }
                EXPECT_NEAR(left.width, left.height * wanted, 1 + wanted);
                EXPECT_TRUE(left.x >= 0 && left.x + left.width < right.x && right.x + right.width <= width);
                EXPECT_LT(left.y + left.height, places.status.y);
            }
        }
        const Box whole = AreaFor(shape, 16, 5000, 5000);
        EXPECT_EQ(PlaceSideBySide(whole.width, whole.height, 16, shape).picture[0].height, shape.height);
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
    EXPECT_NE(pace.Status(7, true).find(L"frame 7    25."), std::wstring::npos);
    EXPECT_EQ(pace.Next(now + 10), 0u);
    EXPECT_EQ(pace.Next(now + 10), 40u);
}

} // namespace
} // namespace host
