// The simulated range's example Program opens in the console as it was meant: its shape, its wave
// across the targets and its Pause row, with nothing to save.

#include <QtTest>

#include "../core/scripted_operator.h"
#include "../core/temp_dir.h"
#include "simulation/example_program.h"
#include "simulation/simulated_range.h"

using namespace halvane;
using app::ExampleProgram;

class ExampleProgramTest : public QObject {
    Q_OBJECT

  private slots:
    void opensWithItsWaveAndPause() {
        testing::TempDir dir;
        testing::Console console;
        console.state.NumTargets = 3;  // what hvn.cfg said; the file decides
        console.form.Load();
        const std::string file = dir.file(ExampleProgram::kFileTitle);
        QVERIFY(!ExampleProgram::write(file, app::SimulatedRange::kTargets));
        QVERIFY(console.form.LoadProgram({file, ExampleProgram::kFileTitle}));

        const SharedState& state = console.state;
        const ProgramGrid& grid = console.grid();
        QCOMPARE(std::make_tuple(state.NumTargets, state.NumSeconds, state.FileChanged, grid.Cols()),
                 std::make_tuple(std::int16_t{8}, std::int16_t{60}, false, 9));
        QCOMPARE(console.form.Caption(), std::string("LM47 Programer - Example wave.hvn"));
        QVERIFY(console.op.log.empty());

        // Bands of two seconds, each target one second behind the one before it.
        using Cell = std::tuple<int, int, std::string>;
        const std::vector<Cell> cells = {{1, 1, "Friend"}, {1, 2, "Down"},  {3, 1, "Foe"},
                                         {5, 1, "Edge"},   {31, 1, "Down"}, {60, 8, "Edge"}};
        for (const auto& [row, col, word] : cells) QCOMPARE(grid.TextMatrix(row, col), word);
        for (int row = 2; row <= 60; ++row)
            for (int col = 2; col <= 8; ++col)
                if (row != ExampleProgram::kPauseSecond && row != ExampleProgram::kPauseSecond + 1)
                    QCOMPARE(grid.TextMatrix(row, col), grid.TextMatrix(row - 1, col - 1));
        QVERIFY(grid.MergeRow(ExampleProgram::kPauseSecond));
        for (int col = 1; col <= 8; ++col) QCOMPARE(grid.TextMatrix(30, col), std::string("Pause"));
    }
};

QTEST_MAIN(ExampleProgramTest)
#include "example_program_test.moc"
