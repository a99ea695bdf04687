#include "tests/engine/KernelChecker.h"

#include "tests/support/GuardedBlocks.h"
#include "tests/support/RandomBytes.h"

#include <algorithm>
#include <sstream>
#include <vector>

namespace {

constexpr std::size_t kMostBytes = 200; // some whole cache lines and every tail
constexpr std::size_t kMostSamples = 130;
constexpr std::uint8_t kCanary = 0xC5;
constexpr std::uint8_t kLeast8 = 0;
constexpr std::uint8_t kMost8 = 255;

// Where rows lie in their blocks: bytes away from the block's start, or from its end. The loose ones come first, so
// that a stray write meets a canary before it can meet an inaccessible page.
struct Placement {
    const char* name;
    bool atEnd;
    std::size_t away[5];
};

constexpr Placement kPlacements[] = {
    {"loose 1, 16, 31, 7, 7", false, {1, 16, 31, 7, 7}},
    {"loose 32, 15, 2, 1, 17", false, {32, 15, 2, 1, 17}},
    {"before a closed page", true, {0, 0, 0, 0, 0}},
    {"behind a closed page", false, {0, 0, 0, 0, 0}},
};

std::uint8_t* Place(const GuardedBlocks& blocks, int block, const Placement& placement, int row, std::size_t bytes) {
    const std::size_t away = placement.away[row];
    return placement.atEnd ? blocks.AtEnd(block, bytes) - away : blocks.AtStart(block) + away;
}

// --- rows mixed byte by byte

constexpr int kSource = 3; // rows that are read; two that are written follow
constexpr int kBlocks = 5;

struct Mix {
    const char* name;
    int outputs;
    void (*run)(const RowWriters& writers, std::uint8_t* const out[2], const std::uint8_t* const rows[3],
                std::size_t bytes, OpenLine& line);
};

using Out = std::uint8_t* const[2];
using Rows = const std::uint8_t* const[3];

constexpr Mix kMixes[] = {
    {"copy", 1,
     [](const RowWriters& w, Out out, Rows rows, std::size_t n, OpenLine& line) { w.copy(out[0], rows[0], n, line); }},
    {"rebuild", 2,
     [](const RowWriters& w, Out out, Rows rows, std::size_t n, OpenLine& line) {
         std::copy_n(rows[0], n, out[1]);
         w.rebuild({out[0], rows[2], rows[2], 0, n, n, 1}, out[1], line);
     }},
    {"blend", 2,
     [](const RowWriters& w, Out out, Rows rows, std::size_t n, OpenLine& line) {
         std::vector<std::uint8_t> newer(rows[1], rows[1] + n);
         std::copy_n(rows[0], n, out[1]);
         w.blend({out[0], rows[2], rows[2], 0, n, n, 1}, out[1], newer.data(), line);
     }},
};

struct Way {
    const char* name;
    RowWriters RowKernels::*writers;
};

constexpr Way kWays[] = {{"cached", &RowKernels::cached}, {"streamed", &RowKernels::streamed}};

// What is wrong with the block that `out` lies in, or null.
const char* Fault(std::span<const std::uint8_t> block, const std::uint8_t* out, const std::vector<std::uint8_t>& want) {
    const auto isCanary = [](std::uint8_t byte) { return byte == kCanary; };
    const std::uint8_t* end = out + want.size();
    if (!std::equal(want.begin(), want.end(), out)) {
        return "differs";
    }
    return std::all_of(block.data(), out, isCanary) && std::all_of(end, block.data() + block.size(), isCanary)
               ? nullptr
               : "wrote outside its row";
}

// Fills the source rows; the rows' starts.
void FillSources(const GuardedBlocks& blocks, const Placement& placement, std::size_t bytes, bool extremes,
                 RandomBytes& random, const std::uint8_t* (&rows)[kSource]) {
    for (int i = 0; i < kSource; ++i) {
        std::uint8_t* row = Place(blocks, i, placement, i, bytes);
        random.Fill({row, bytes});
        if (extremes) {
            std::transform(row, row + bytes, row, [](std::uint8_t b) { return b & 1 ? kMost8 : kLeast8; });
        }
        rows[i] = row;
    }
}

// Runs the mix of `writers` and compares with `want`; what is wrong, or null.
const char* RunAndCompare(const Mix& mix, const RowWriters& writers, const GuardedBlocks& blocks,
                          const Placement& placement, const std::uint8_t* const (&rows)[kSource],
                          const std::vector<std::uint8_t> (&want)[2]) {
    std::uint8_t* out[2];
    for (int i = 0; i < 2; ++i) {
        out[i] = Place(blocks, kSource + i, placement, kSource + i, want[i].size());
        std::ranges::fill(blocks.Block(kSource + i), kCanary);
    }
    OpenLine line;
    mix.run(writers, out, rows, want[0].size(), line);
    writers.finish(line);
    const char* fault = nullptr;
    for (int i = 0; i < mix.outputs && !fault; ++i) {
        fault = Fault(blocks.Block(kSource + i), out[i], want[i]);
    }
    return fault;
}

std::string CheckMix(const Mix& mix, const Way& way, const RowKernels& variant, std::uint32_t seed) {
    const GuardedBlocks blocks(kBlocks, 1);
    RandomBytes random(seed);
    for (std::size_t bytes = 0; bytes <= kMostBytes; ++bytes) {
        for (const Placement& placement : kPlacements) {
            for (const bool extremes : {false, true}) {
                const std::uint8_t* rows[kSource];
                FillSources(blocks, placement, bytes, extremes, random, rows);
                std::vector<std::uint8_t> want[2]{std::vector<std::uint8_t>(bytes), std::vector<std::uint8_t>(bytes)};
                std::uint8_t* const wanted[2] = {want[0].data(), want[1].data()};
                OpenLine unused;
                mix.run(kScalarKernels.cached, wanted, rows, bytes, unused);
                if (const char* fault = RunAndCompare(mix, variant.*way.writers, blocks, placement, rows, want)) {
                    std::ostringstream text;
                    text << variant.name << " " << mix.name << " " << fault << ": " << way.name << " bytes=" << bytes
                         << " rows " << placement.name << (extremes ? " extremes" : " random") << " seed=" << seed;
                    return text.str();
                }
            }
        }
    }
    return {};
}

// --- trios of large steps

struct Comb {
    const char* name;
    CombTriosFn RowKernels::*kernel;
    std::size_t sampleBytes;
};

constexpr Comb kCombs[] = {
    {"comb16", &RowKernels::comb16, 4},
    {"comb24", &RowKernels::comb24, 3},
    {"comb32", &RowKernels::comb32, 4},
};

// How far the bytes of one sample step from row to row, and how many of 100 samples step at all.
struct Steps {
    const char* name;
    std::uint8_t choice[4];
    int share;
};

constexpr Steps kSteps[] = {
    {"0 to 255", {0, 255, 0, 255}, 70},      {"of 12 and 13", {12, 12, 12, 13}, 100},
    {"of 13 and 14", {13, 14, 14, 14}, 100}, {"of 24", {0, 0, 24, 24}, 100},
    {"of 1 and 24", {0, 0, 1, 24}, 100},     {"of 25", {0, 0, 25, 25}, 100},
    {"here and there", {25, 40, 0, 255}, 5}, {"of one sample", {25, 25, 25, 200}, 1},
};

using Picture = std::vector<std::vector<std::uint8_t>>;

std::uint8_t Stepped(std::uint8_t from, std::uint8_t step, bool up) {
    const int wanted = up ? from + step : from - step;
    const int other = up ? from - step : from + step;
    return static_cast<std::uint8_t>(wanted >= 0 && wanted <= 255 ? wanted : std::clamp(other, 0, 255));
}

Picture MakePicture(RandomBytes& random, int rows, std::size_t samples, std::size_t sampleBytes, const Steps& steps) {
    Picture picture(static_cast<std::size_t>(rows), std::vector<std::uint8_t>(samples * sampleBytes));
    for (std::size_t s = 0; s < samples; ++s) {
        const bool stepping = random.Below(100) < steps.share;
        for (std::size_t at = s * sampleBytes; at < (s + 1) * sampleBytes; ++at) {
            picture[0][at] = random.Byte();
            for (std::size_t y = 1; y < picture.size(); ++y) {
                const std::uint8_t step = stepping ? steps.choice[random.Below(4)] : std::uint8_t{0};
                picture[y][at] = Stepped(picture[y - 1][at], step, random.Below(2) != 0);
            }
        }
    }
    return picture;
}

// Copies the picture's rows between closed pages; returns where the third row starts.
const std::uint8_t* PlacePicture(const GuardedBlocks& blocks, const Picture& picture, const Placement& placement) {
    for (std::size_t y = 0; y < picture.size(); ++y) {
        std::ranges::copy(picture[y], Place(blocks, static_cast<int>(y), placement, 0, picture[y].size()));
    }
    return Place(blocks, 2, placement, 0, picture[2].size());
}

std::string CheckComb(const Comb& comb, const RowKernels& variant, int pairsAfter, std::uint32_t seed) {
    const int rows = 4 + pairsAfter;
    const GuardedBlocks blocks(rows, 1);
    RandomBytes random(seed + static_cast<std::uint32_t>(pairsAfter));
    for (std::size_t samples = 0; samples <= kMostSamples; ++samples) {
        for (const Steps& steps : kSteps) {
            const Picture picture = MakePicture(random, rows, samples, comb.sampleBytes, steps);
            for (const Placement& placement : kPlacements) {
                const std::uint8_t* row = PlacePicture(blocks, picture, placement);
                const auto count = static_cast<std::int32_t>(samples);
                const std::uint32_t want = (kScalarKernels.*comb.kernel)(row, blocks.Distance(), count, pairsAfter);
                const std::uint32_t got = (variant.*comb.kernel)(row, blocks.Distance(), count, pairsAfter);
                if (want != got) {
                    std::ostringstream text;
                    text << variant.name << " " << comb.name << " counts " << got << " instead of " << want
                         << ": samples=" << samples << " pairsAfter=" << pairsAfter << " steps " << steps.name
                         << " rows " << placement.name << " seed=" << seed;
                    return text.str();
                }
            }
        }
    }
    return {};
}

} // namespace

std::string CheckRowKernels(const RowKernels& variant, std::uint32_t seed) {
    for (const Mix& mix : kMixes) {
        for (const Way& way : kWays) {
            if (std::string fault = CheckMix(mix, way, variant, seed); !fault.empty()) {
                return fault;
            }
        }
    }
    for (const Comb& comb : kCombs) {
        for (int pairsAfter = 0; pairsAfter <= 2; ++pairsAfter) {
            if (std::string fault = CheckComb(comb, variant, pairsAfter, seed); !fault.empty()) {
                return fault;
            }
        }
    }
    return {};
}
