// How the Program table copes with the largest Program: showing it, and painting while scrolling.
// Runs offscreen; each figure is the wall time of real paints (QWidget::grab) of a 1000 x 700 table.

#include <QApplication>
#include <QElapsedTimer>
#include <QScrollBar>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <random>

#include "authoring/program_file.h"
#include "grid_table_model.h"
#include "largest_program.h"
#include "program_table_view.h"

using namespace halvane;

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);

    const auto path = bench::writeLargestProgram("halvane-bench-view.hvn");
    SharedState state;
    state.FilePath = path.string();
    std::unique_ptr<ProgramGrid> grid;
    if (readProgramFile(state, standaloneHost(state, grid))) return 1;

    app::ProgramTableView view;
    view.resize(1000, 700);
    view.show();
    QElapsedTimer timer;
    timer.start();
    view.gridModel()->setGrid(grid.get());
    view.reload();
    view.grab();
    const double showMs = timer.nsecsElapsed() / 1e6;

    std::mt19937 random(7);
    QScrollBar* vertical = view.verticalScrollBar();
    QScrollBar* horizontal = view.horizontalScrollBar();
    constexpr int kFrames = 200;
    double worst = 0;
    timer.restart();
    for (int i = 0; i < kFrames; ++i) {
        QElapsedTimer frame;
        frame.start();
        if (i % 2) {
            vertical->setValue(std::uniform_int_distribution<int>(0, vertical->maximum())(random));
            horizontal->setValue(std::uniform_int_distribution<int>(0, horizontal->maximum())(random));
        } else {
            vertical->setValue(vertical->value() + vertical->pageStep());
        }
        view.grab();
        worst = std::max(worst, frame.nsecsElapsed() / 1e6);
    }
    const double meanMs = timer.nsecsElapsed() / 1e6 / kFrames;
    std::printf("table of %d rows x %d columns (%d Pause rows merged)\n", grid->Rows() - 1, grid->Cols() - 1,
                bench::kLargestSeconds / 100);
    std::printf("show the Program: %.1f ms\n", showMs);
    std::printf("scroll and paint: %.2f ms a frame on average, %.2f ms at worst (%d frames)\n", meanMs, worst,
                kFrames);
    std::filesystem::remove(path);
    return 0;
}
