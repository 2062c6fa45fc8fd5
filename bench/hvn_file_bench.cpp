// Load and save of the largest Program: 200 targets by 32765 seconds, every cell a word.
// Peak memory is reported as a counter (the process's high-water mark after the runs).

#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#include "authoring/program_file.h"
#include "largest_program.h"

namespace {

using namespace halvane;
namespace fs = std::filesystem;

const fs::path& largestFile() {
    static const fs::path path = bench::writeLargestProgram("halvane-bench-largest.hvn");
    return path;
}

double peakMegabytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024.0;
}

std::unique_ptr<ProgramGrid> load(SharedState& state) {
    std::unique_ptr<ProgramGrid> grid;
    state.FilePath = largestFile().string();
    if (readProgramFile(state, standaloneHost(state, grid))) std::abort();
    return grid;
}

void BM_LoadLargest(benchmark::State& bench) {
    largestFile();
    for (auto _ : bench) {
        SharedState state;
        auto grid = load(state);
        benchmark::DoNotOptimize(grid.get());
    }
    bench.counters["peak_MB"] = peakMegabytes();
    bench.counters["file_MB"] = static_cast<double>(fs::file_size(largestFile())) / (1024.0 * 1024.0);
}
BENCHMARK(BM_LoadLargest)->Unit(benchmark::kMillisecond)->Iterations(5);

void BM_SaveLargest(benchmark::State& bench) {
    SharedState state;
    auto grid = load(state);
    state.FilePath = (fs::temp_directory_path() / "halvane-bench-saved.hvn").string();
    for (auto _ : bench)
        if (writeProgramFile(state, *grid)) std::abort();
    bench.counters["peak_MB"] = peakMegabytes();
}
BENCHMARK(BM_SaveLargest)->Unit(benchmark::kMillisecond)->Iterations(5);

}  // namespace

BENCHMARK_MAIN();
