// What a frame costs beside its pixels: no memory.
#include "tests/support/Heap.h"
#include "tests/support/Transform.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> g_allocations;
std::atomic<std::size_t> g_allocatedBytes;

} // namespace

// Every allocation of the module, which this program is linked with, comes through here.
void* operator new(std::size_t bytes) {
    ++g_allocations;
    g_allocatedBytes += bytes;
    if (void* block = std::malloc(bytes ? bytes : 1)) {
        return block;
    }
    throw std::bad_alloc();
}
void operator delete(void* block) noexcept {
    std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}

namespace {

constexpr UINT32 kWidth = 64;
constexpr UINT32 kHeight = 48;
constexpr std::size_t kFrameBytes = kWidth * kHeight * 3;

// Every 40th frame is combed, so that the hold of 25 begins and ends.
TEST_F(TransformTest, FramesTakeNoMemory) {
    SetTypes(MFVideoFormat_RGB24, kWidth, kHeight, 5);
    CComRef<IMFSample> clean, combed, output;
    std::vector<BYTE> frame(kFrameBytes, 100);
    MakeSample(frame, clean);
    MakeSample(frame, output);
    for (std::size_t row = 1; row < kHeight; row += 2) {
        std::fill_n(frame.begin() + static_cast<std::ptrdiff_t>(row * kWidth * 3), kWidth * 3, BYTE{200});
    }
    MakeSample(frame, combed);
    for (int settings = 0; settings < 8; ++settings) {
        SCOPED_TRACE(settings);
        Control()->put_AutoDeinterlace(settings & 1 ? VARIANT_TRUE : VARIANT_FALSE);
        Control()->put_EnableROI(settings & 2 ? VARIANT_TRUE : VARIANT_FALSE);
        Control()->put_EnableProtectedArea(settings & 4 ? VARIANT_TRUE : VARIANT_FALSE);
        const std::size_t bytes = g_allocatedBytes;
        std::size_t allocations = g_allocations;
        ASSERT_HR(S_OK, Mft()->ProcessMessage(MFT_MESSAGE_NOTIFY_START_OF_STREAM, 0));
        EXPECT_EQ(allocations + 2, g_allocations); // two frames are held
        EXPECT_EQ(bytes + 2 * kFrameBytes, g_allocatedBytes);
        std::int64_t busy = 0;
        for (int i = 0; i < 20'000; ++i) {
            if (i == 100) {
                allocations = g_allocations;
                busy = BusyBytes();
            }
            ASSERT_HR(S_OK, PassFrame(Mft(), i % 40 ? clean.Get() : combed.Get(), output.Get()));
        }
        EXPECT_EQ(allocations, g_allocations);
        EXPECT_EQ(busy, BusyBytes());
    }
}

} // namespace
