// The main window's view offscreen: the menu bar as the model says, the Program table, the close box.

#include <QAction>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QtTest>

#include "../core/scripted_operator.h"
#include "console/main_window.h"
#include "grid_table_model.h"
#include "main_window_view.h"
#include "platform/twips.h"
#include "program_table_view.h"

using namespace halvane;
using halvane::testing::ScriptedOperator;

class MainWindowViewTest : public QObject {
    Q_OBJECT

  private slots:
    void menuBarFollowsTheModel() {
        halvane::testing::Console w;
        w.state.RadioLMC = true;
        app::MainWindowView view(w.form);
        QStringList shown;
        for (QAction* a : view.menuBar()->actions())
            if (a->isVisible()) shown << a->text();
        QCOMPARE(shown, (QStringList{"&File", "&Add Time", "&Live Mode", "&Run", "&Transmitter", "&Config",
                                     "&Help"}));
        QCOMPARE(view.action("M_New")->shortcut(), QKeySequence("Ctrl+N"));
        QVERIFY(!view.action("M_Time")->isEnabled());
        QVERIFY(!view.action("M_HitScores")->isVisible());
        QCOMPARE(view.windowTitle(), QString("Halvane"));
    }

    void openShowsTheProgramWithColoursAndMergedPauseRow() {
        halvane::testing::Console w;
        app::MainWindowView view(w.form);
        view.resize(900, 600);
        w.op.files = {ChosenFile{HALVANE_TEST_DATA "/mixed.hvn", "mixed.hvn"}};
        view.runCommand("M_Open");

        auto* table = view.table();
        QVERIFY(table->isVisibleTo(&view));
        auto* model = table->gridModel();
        QCOMPARE(model->rowCount(), 5);
        QCOMPARE(model->headerData(0, Qt::Horizontal, Qt::DisplayRole).toString(), QString("Target # 1"));
        QCOMPARE(table->cornerText(), QString("Seconds"));
        const auto colour = [model](int row, int col, int role) {
            return model->index(row, col).data(role).value<QColor>();
        };
        QCOMPARE(colour(0, 0, Qt::BackgroundRole), QColor(255, 0, 0));
        QCOMPARE(colour(0, 1, Qt::BackgroundRole), QColor(0, 255, 0));
        QCOMPARE(colour(1, 1, Qt::ForegroundRole), QColor(255, 255, 255));
        QCOMPARE(std::make_pair(table->columnSpan(0, 0), table->columnSpan(1, 0)), std::make_pair(1, 3));
        QCOMPARE(table->horizontalHeader()->sectionSize(0), app::toPixels(1000));
        QCOMPARE(view.windowTitle(), QString("LM47 Programer - mixed.hvn"));
        QCOMPARE(table->height(), app::toPixels(w.form.grid()->Height));

        view.runCommand("M_Close");
        QVERIFY(!table->isVisibleTo(&view) && model->rowCount() == 0);
    }

    // New, Open of a bad file and Add Time each let go of or reshape the grid while a dialog's event loop
    // may paint the table: every paint must find the grid the model holds at that moment.
    void dialogsThatPaintWhileTheGridIsReplacedFindTheCurrentGrid() {
        halvane::testing::Console w;
        w.state.NumTargets = 3;
        app::MainWindowView view(w.form);
        view.resize(900, 600);
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        const auto paintThen = [&view](std::function<void(Settings&)> then) {
            return [&view, then](Settings& d) {
                view.grab();
                then(d);
            };
        };
        w.op.script<Settings>(paintThen(ScriptedOperator::typeAndOk("30")));
        view.runCommand("M_New");
        w.op.script<Settings>(paintThen(ScriptedOperator::typeAndOk("12")));
        view.runCommand("M_New");  // the first Program goes while this dialog paints
        QCOMPARE(view.table()->gridModel()->rowCount(), 13);
        w.op.script<Settings>(paintThen(ScriptedOperator::typeAndOk("4")));
        view.runCommand("M_Time");
        QCOMPARE(view.table()->gridModel()->rowCount(), 5);
        view.grab();
        w.op.answers = {Answer::No};  // the new length is a change
        w.op.script<Settings>(paintThen([](Settings& d) { d.CancelButton(); }));
        view.runCommand("M_New");
        QVERIFY(!view.table()->isVisibleTo(&view) && view.table()->gridModel()->rowCount() == 0);
    }

    void closeBoxWithChangesAsksAndCancelKeepsTheWindow() {
        halvane::testing::Console w;
        app::MainWindowView view(w.form);
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        w.state.FileChanged = true;
        w.op.answers = {Answer::Cancel};
        QVERIFY(!view.close() && view.isVisible());
        QCOMPARE(w.op.log.back(), std::string("ask: Halvane: File is Changed do you want to save?"));
        w.op.answers = {Answer::No};
        QVERIFY(view.close() && !w.positions.entries.empty());
    }
};

QTEST_MAIN(MainWindowViewTest)
#include "main_window_view_test.moc"
