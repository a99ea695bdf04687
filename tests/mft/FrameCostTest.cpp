// What a frame costs beside its pixels: no memory.
#include "tests/support/Heap.h"
#include "tests/support/Media.h"
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

class FrameCost : public TransformTest {
protected:
    void SetUp() override {
        TransformTest::SetUp();
        CComRef<IMFMediaType> type;
        MakeVideoType(MFVideoFormat_RGB24, kWidth, kHeight, type, 5);
        ASSERT_HR(S_OK, Mft()->SetInputType(0, type.Get(), 0));
        ASSERT_HR(S_OK, Mft()->SetOutputType(0, type.Get(), 0));
        std::vector<BYTE> frame(kFrameBytes, 100);
        MakeSample(frame, m_clean);
        MakeSample(frame, m_output);
        for (std::size_t row = 1; row < kHeight; row += 2) {
            std::fill_n(frame.begin() + static_cast<std::ptrdiff_t>(row * kWidth * 3), kWidth * 3, BYTE{200});
        }
        MakeSample(frame, m_combed);
    }

    // True when all frames were taken: every 40th is combed, so that the hold of 25 begins and ends.
    bool Run(int frames) {
        MFT_OUTPUT_DATA_BUFFER buffer{0, m_output.Get(), 0, nullptr};
        DWORD status = 0;
        bool taken = true;
        for (int i = 0; i < frames && taken; ++i) {
            taken = SUCCEEDED(Mft()->ProcessInput(0, i % 40 ? m_clean.Get() : m_combed.Get(), 0)) &&
                    SUCCEEDED(Mft()->ProcessOutput(0, 1, &buffer, &status));
        }
        return taken;
    }

    CComRef<IMFSample> m_clean, m_combed, m_output;
};

TEST_F(FrameCost, NoAllocationInTenThousandFrames) {
    for (int settings = 0; settings < 8; ++settings) {
        Control()->put_AutoDeinterlace(settings & 1 ? VARIANT_TRUE : VARIANT_FALSE);
        Control()->put_EnableROI(settings & 2 ? VARIANT_TRUE : VARIANT_FALSE);
        Control()->put_EnableProtectedArea(settings & 4 ? VARIANT_TRUE : VARIANT_FALSE);
        ASSERT_HR(S_OK, Mft()->ProcessMessage(MFT_MESSAGE_NOTIFY_START_OF_STREAM, 0));
        ASSERT_TRUE(Run(1));
        const std::size_t before = g_allocations;
        const bool taken = Run(10'000);
        EXPECT_EQ(before, g_allocations) << "settings " << settings;
        EXPECT_TRUE(taken);
    }
}

TEST_F(FrameCost, TwoFramesAreHeldAndNothingGrows) {
    const std::size_t allocations = g_allocations;
    const std::size_t bytes = g_allocatedBytes;
    ASSERT_HR(S_OK, Mft()->ProcessMessage(MFT_MESSAGE_NOTIFY_START_OF_STREAM, 0));
    EXPECT_EQ(allocations + 2, g_allocations);
    EXPECT_EQ(bytes + 2 * kFrameBytes, g_allocatedBytes);
    ASSERT_TRUE(Run(100));
    const std::int64_t before = BusyBytes();
    ASSERT_GT(before, 0);
    ASSERT_TRUE(Run(100'000));
    EXPECT_EQ(before, BusyBytes());
}

} // namespace
