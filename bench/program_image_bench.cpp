// The Program image of the largest Program: 200 targets by 32765 seconds, a change every third
// second in every column and a Pause row every hundredth.

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include "authoring/program_file.h"
#include "largest_program.h"
#include "links/program_image.h"

namespace {

using namespace halvane;
namespace fs = std::filesystem;

struct Largest {
    SharedState state;
    std::unique_ptr<ProgramGrid> grid;
};

Largest& largest() {
    static Largest program = [] {
        Largest p;
        p.state.FilePath = bench::writeLargestProgram("halvane-bench-largest.hvn").string();
        if (readProgramFile(p.state, standaloneHost(p.state, p.grid))) std::abort();
        return p;
    }();
    return program;
}

// The scan alone.
void BM_ScanOfLargest(benchmark::State& bench) {
    Largest& p = largest();
    for (auto _ : bench) benchmark::DoNotOptimize(WriteProgramImage(p.state, *p.grid).data());
}
BENCHMARK(BM_ScanOfLargest)->Unit(benchmark::kMillisecond)->Iterations(5);

// The scan and the text of temp.lm47 in memory.
void BM_ImageOfLargest(benchmark::State& bench) {
    Largest& p = largest();
    std::size_t records = 0, bytes = 0;
    for (auto _ : bench) {
        const auto image = WriteProgramImage(p.state, *p.grid);
        const std::string text = imageText(image);
        records = image.size();
        bytes = text.size();
        benchmark::DoNotOptimize(text.data());
    }
    bench.counters["records"] = static_cast<double>(records);
    bench.counters["text_MB"] = static_cast<double>(bytes) / (1024.0 * 1024.0);
}
BENCHMARK(BM_ImageOfLargest)->Unit(benchmark::kMillisecond)->Iterations(5);

// The same up to temp.lm47 on disk, as a send does it.
void BM_TempImageOfLargest(benchmark::State& bench) {
    Largest& p = largest();
    const fs::path path = fs::temp_directory_path() / "halvane-bench-temp.lm47";
    for (auto _ : bench)
        if (writeTempImage(WriteProgramImage(p.state, *p.grid), path)) std::abort();
    fs::remove(path);
}
BENCHMARK(BM_TempImageOfLargest)->Unit(benchmark::kMillisecond)->Iterations(5);

}  // namespace

BENCHMARK_MAIN();
