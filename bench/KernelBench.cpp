// The row kernels of every level, on rows that stay in the first-level cache.
#include "bench/Table.h"
#include "engine/kernels/CarriedRows.h"
#include "engine/kernels/RowKernels.h"

#include <benchmark/benchmark.h>

#include <array>
#include <string>
#include <vector>

namespace {

constexpr std::size_t kRow = 3840; // 1920 pixels of YUY2
constexpr std::ptrdiff_t kRows = 6;

struct Rows {
    alignas(64) std::array<std::uint8_t, kRows * kRow> in{};
    alignas(64) std::array<std::uint8_t, 2 * kRow> out{};
    CarriedRows carried;
    OpenLine line;

    const std::uint8_t* Row(std::ptrdiff_t row) const { return in.data() + row * static_cast<std::ptrdiff_t>(kRow); }
};

using KernelRun = void (*)(const RowKernels& kernels, Rows& rows);

RowRun Run(Rows& r, std::int32_t rows) {
    return {r.out.data(), r.Row(2), r.Row(kRows - 1), kRow, kRow, kRow, rows};
}

template <RowWriters RowKernels::*Way>
void RunRebuild(const RowKernels& k, Rows& r) {
    (k.*Way).rebuild(Run(r, 2), r.carried.One(), r.line);
}

template <RowWriters RowKernels::*Way>
void RunBlend(const RowKernels& k, Rows& r) {
    (k.*Way).blend(Run(r, 1), r.carried.OfTwo(0), r.carried.OfTwo(1), r.line);
}

template <RowWriters RowKernels::*Way>
void RunCopy(const RowKernels& k, Rows& r) {
    (k.*Way).copy(r.out.data(), r.Row(0), kRow, r.line);
}

template <CombTriosFn RowKernels::*Comb, int SampleBytes>
void RunComb(const RowKernels& k, Rows& r) {
    benchmark::DoNotOptimize((k.*Comb)(r.Row(2), kRow, kRow / SampleBytes, 2));
}

struct Kernel {
    const char* name;
    KernelRun run;
    std::int64_t bytes; // of the frame that one call deals with
};

constexpr Kernel kKernels[] = {
    {"copy", RunCopy<&RowKernels::cached>, kRow},
    {"copy, streaming", RunCopy<&RowKernels::streamed>, kRow},
    {"rebuild", RunRebuild<&RowKernels::cached>, 2 * kRow},
    {"rebuild, streaming", RunRebuild<&RowKernels::streamed>, 2 * kRow},
    {"blend", RunBlend<&RowKernels::cached>, kRow},
    {"blend, streaming", RunBlend<&RowKernels::streamed>, kRow},
    {"comb16, clean", RunComb<&RowKernels::comb16, 4>, 3 * kRow},
    {"comb24, clean", RunComb<&RowKernels::comb24, 3>, 3 * kRow},
};

void Register(const RowKernels& level, const Kernel& kernel) {
    const std::string name = std::string(level.name) + "/" + kernel.name;
    benchmark::RegisterBenchmark(name.c_str(), [&level, &kernel](benchmark::State& state) {
        static Rows rows;
        for (auto _ : state) {
            kernel.run(level, rows);
            benchmark::ClobberMemory();
        }
        state.SetBytesProcessed(state.iterations() * kernel.bytes);
    });
}

// One row of the common table for each kernel, from the repetitions' rates.
class TableReporter : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context&) override { return true; }

    void ReportRuns(const std::vector<Run>& runs) override {
        std::vector<double> rates;
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Iteration) {
                rates.push_back(run.counters.at("bytes_per_second") * 1e-9);
            }
        }
        if (!rates.empty()) {
            PrintRate("kernels, native", runs.front().benchmark_name(), "1 row of 3840 bytes", "warm", SpreadOf(rates));
        }
    }
};

} // namespace

int main(int argc, char** argv) {
    for (const RowKernels* level : AllRowKernels()) {
        for (const Kernel& kernel : kKernels) {
            if (level->supported()) {
                Register(*level, kernel);
            }
        }
    }
    benchmark::Initialize(&argc, argv);
    TableReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}
