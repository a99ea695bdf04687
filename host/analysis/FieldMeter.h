// How well a frame's fields fit each other and those of the frame before. Two fields of one moment make a smooth
// picture when their rows are put together; the farther apart their moments are, the more its rows zigzag.
#pragma once

#include "host/analysis/LumaPlane.h"
#include "host/picture/PixelFormat.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace host {

// Zigzag of two fields put together, on a scale of its own, over the blocks that tell most.
struct FieldReading {
    double own = 0;         // the frame's two fields
    double topLater = 0;    // its top field with the bottom field of the frame before
    double bottomLater = 0; // its bottom field with the top field of the frame before
    // How far the three lie apart beyond chance: the largest difference as a multiple of its standard error.
    double certainty = 0;
    // Change of either field since the frame before, in grey levels per pixel, over the blocks that changed most.
    double topChange = 0;
    double bottomChange = 0;
    double moving = 0; // share of the picture that changed; 0: nothing of the above is known
};

// Looks at frames in their order. Keeps the luma of two frames; reading allocates nothing.
class CFieldMeter {
public:
    CFieldMeter(Pixels pixels, int width, int height);

    // The first frame, and pictures too small for a block, read as if nothing moved.
    FieldReading Read(const std::uint8_t* frame);

private:
    struct Block {
        std::uint32_t own, topLater, bottomLater; // sums over the block's pixels
        std::uint32_t topChange, bottomChange;
        std::uint32_t Spread() const;
        std::uint32_t Change() const { return topChange > bottomChange ? topChange : bottomChange; }
    };

    void Measure();
    void MeasureRow(int y);
    std::size_t KeepMoving();
    FieldReading Weigh();
    void WeighFit(FieldReading& reading);
    void WeighChange(FieldReading& reading);
    template <class Key>
    std::uint32_t TellingFrom(Key key);

    Pixels m_pixels;
    int m_width;
    int m_height;
    int m_columns; // of blocks
    LumaPlane m_now;
    LumaPlane m_before;
    std::vector<Block> m_blocks;
    std::vector<std::uint32_t> m_sorted;
    bool m_isFirst = true;
};

} // namespace host
