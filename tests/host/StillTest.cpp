#include "host/formats/FrameSource.h"
#include "host/picture/Still.h"
#include "tests/host/MemoryStreams.h"

namespace host {
namespace {

// A grey frame with combs in one rectangle.
Bytes CombedFrame(Pixels pixels, int width, int height, const Window& combs) {
    Bytes frame(FrameSize(pixels, width, height), 128);
    const FrameTarget target = PackedFrame(pixels, width, height, frame.data());
    const int bytes = TraitsOf(pixels).bits / 8;
    for (int y = combs.y; y < combs.y + combs.height; ++y) {
        std::uint8_t* const row = target.Row(0, y);
        std::fill(row + combs.x * bytes, row + (combs.x + combs.width) * bytes, std::uint8_t(y % 2 ? 250 : 10));
    }
    return frame;
}

TEST(Still, WindowFindsTheCombs) {
    constexpr Window kPlaces[] = {{0, 0, 40, 40}, {280, 200, 40, 40}, {150, 10, 30, 20}, {20, 190, 60, 50}};
    for (const Pixels pixels : {Pixels::Rgb24, Pixels::Yuy2, Pixels::Uyvy, Pixels::Iyu2}) {
        for (const Window& combs : kPlaces) {
            const Bytes frame = CombedFrame(pixels, 320, 240, combs);
            const Window found = MostCombedWindow(pixels, 320, 240, frame.data());
            const int middleX = combs.x + combs.width / 2;
            const int middleY = combs.y + combs.height / 2;
            EXPECT_TRUE(found.x <= middleX && middleX < found.x + found.width && found.y <= middleY &&
                        middleY < found.y + found.height)
                << TraitsOf(pixels).name << ": combs at " << combs.x << "," << combs.y << ", window at " << found.x
                << "," << found.y << " of " << found.width << "x" << found.height;
        }
    }
}

TEST(Still, WindowStaysInsideFramesOfAnySize) {
    for (const Pixels pixels : {Pixels::Rgb24, Pixels::Yuy2}) {
        for (int width = 2; width <= 130; width += 8) {
            for (const int height : {1, 2, 3, 4, 15, 16, 17, 50}) {
                const Bytes frame = RandomBytes(FrameSize(pixels, width, height), 4);
                const Window w = MostCombedWindow(pixels, width, height, frame.data());
                ASSERT_TRUE(w.x >= 0 && w.y >= 0 && w.width > 0 && w.height > 0 && w.x + w.width <= width &&
                            w.y + w.height <= height)
                    << width << "x" << height;
            }
        }
    }
}

FrameView View(Bytes& bytes, int width, int height) {
    FrameView view;
    view.layout = Layout::Rgb24;
    view.width = width;
    view.height = height;
    view.plane[0] = bytes.data();
    view.stride[0] = std::ptrdiff_t{3} * width;
    return view;
}

// How often an area of the image is `picture`, each pixel enlarged `scale` times.
int Occurrences(Image& image, const FrameView& picture, const Window& part, int scale) {
    int count = 0;
    for (int top = 0; top + part.height * scale <= image.height; ++top) {
        for (int left = 0; left + part.width * scale <= image.width; ++left) {
            bool same = true;
            for (int y = 0; same && y < part.height * scale; ++y) {
                for (int x = 0; same && x < part.width * scale; ++x) {
                    const std::uint8_t* const want = picture.Row(0, part.y + y / scale) + 3 * (part.x + x / scale);
                    same = std::equal(want, want + 3, image.At(left + x, top + y));
                }
            }
            count += same ? 1 : 0;
        }
    }
    return count;
}

TEST(Still, HoldsBothPicturesAndBothDetailsOnce) {
    for (const int width : {20, 64}) {
        Bytes before = RandomBytes(std::size_t(width) * 12 * 3, 1);
        Bytes after = RandomBytes(std::size_t(width) * 12 * 3, 2);
        const Window window{4, 3, 10, 6};
        const Window whole{0, 0, width, 12};
        Image image = ComposeStill(View(before, width, 12), View(after, width, 12), window, 4294967295u);
        EXPECT_EQ(Occurrences(image, View(before, width, 12), whole, 1), 1);
        EXPECT_EQ(Occurrences(image, View(after, width, 12), whole, 1), 1);
        EXPECT_EQ(Occurrences(image, View(before, width, 12), window, 4), 1);
        EXPECT_EQ(Occurrences(image, View(after, width, 12), window, 4), 1);
    }
}

TEST(Still, LabelsAreCutAtTheEdge) {
    Image image(9, 7);
    DrawLabel(image, 0, 0, 1, "LLL");
    EXPECT_EQ(*image.At(0, 0), 255); // the stem of L
    EXPECT_EQ(*image.At(4, 6), 255); // its foot
    EXPECT_EQ(*image.At(4, 0), 0);
    EXPECT_EQ(*image.At(6, 3), 255); // the next stem
    DrawLabel(image, -3, 5, 4, "0X9");
}

} // namespace
} // namespace host
