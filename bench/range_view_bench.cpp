// Opening the range view of 200 Large targets and painting it while it scrolls, offscreen.
// --shot=FILE saves a picture of the view first.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QScrollBar>
#include <cstdio>
#include <cstring>
#include <memory>

#include "range_view_widget.h"

using namespace halvane;

namespace {

SharedState largeRange() {
    SharedState state;
    state.NumTargets = 200;
    state.NumCols = 10;
    state.IconSize = "Large";
    state.StartBottom = false;
    state.TypeLMSeries = true;
    for (int t = 1; t <= 200; ++t) state.SerialNum[static_cast<std::size_t>(t)] = 100000 + t;
    return state;
}

void showFaces(RangeView& model) {
    const wire::Action faces[] = {wire::Action::Friend, wire::Action::Foe, wire::Action::Edge,
                                  wire::Action::Down};
    for (int t = 1; t <= 200; ++t) model.setFace(t, faces[t % 4]);
}

// The model built, the widget made and the first whole view painted.
void openLargeRange() {
    SharedState state = largeRange();
    RangeView model(state, RangeWindowKind::Run);
    model.build();
    app::RangeViewWidget view(model);
    view.resize(1000, 700);
    benchmark::DoNotOptimize(view.grab());
}

// After the first opening the pictures are rendered already, as for every later window.
void OpenLargeRange(benchmark::State& bench) {
    for (auto _ : bench) openLargeRange();
}
BENCHMARK(OpenLargeRange)->Unit(benchmark::kMillisecond);

// Every tile of the range painted at once, as a picture of all of PicMain.
void PaintWholeRange(benchmark::State& bench) {
    SharedState state = largeRange();
    RangeView model(state, RangeWindowKind::Run);
    model.build();
    showFaces(model);
    app::RangeViewWidget view(model);
    for (auto _ : bench) benchmark::DoNotOptimize(view.picMain()->grab());
}
BENCHMARK(PaintWholeRange)->Unit(benchmark::kMillisecond);

// One line step down (or back to the top at the end), then the viewport painted.
void ScrollOneLine(benchmark::State& bench) {
    SharedState state = largeRange();
    RangeView model(state, RangeWindowKind::Run);
    model.build();
    showFaces(model);
    app::RangeViewWidget view(model);
    view.resize(1000, 700);
    QScrollBar* bar = view.verticalScrollBar();
    for (auto _ : bench) {
        bar->setValue(bar->value() >= bar->maximum() ? 0 : bar->value() + bar->singleStep());
        benchmark::DoNotOptimize(view.viewport()->grab());
    }
}
BENCHMARK(ScrollOneLine)->Unit(benchmark::kMicrosecond);

void saveShot(const char* path) {
    SharedState state = largeRange();
    state.NumTargets = 12;
    state.NumCols = 6;
    state.ReplyHex[2] = "3";
    state.ReplyHex[9] = "12";
    RangeView model(state, RangeWindowKind::Run);
    model.build();
    const wire::Action faces[] = {wire::Action::Friend, wire::Action::Foe, wire::Action::Edge,
                                  wire::Action::Down};
    for (int t = 1; t <= 12; ++t) model.setFace(t, faces[(t - 1) % 4]);
    app::RangeViewWidget view(model);
    view.resize(view.picMain()->width() + 4, view.picMain()->height() + 4);
    view.grab().save(path);
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    for (int i = 1; i < argc; ++i)
        if (std::strncmp(argv[i], "--shot=", 7) == 0) {
            saveShot(argv[i] + 7);
            return 0;
        }
    // The very first opening also renders the pictures from their SVG.
    QElapsedTimer first;
    first.start();
    openLargeRange();
    std::printf("first opening of the range, pictures rendered: %.1f ms\n", first.nsecsElapsed() / 1e6);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
