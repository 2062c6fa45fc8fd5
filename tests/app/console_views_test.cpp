// The console's windows on screen (offscreen): the main window and its Program table, the dialogs, the
// range view, the one call that shows every window, faults inside the handlers of modal dialogs, and
// the run window.

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QHeaderView>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPainter>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTableWidget>
#include <QTimer>
#include <QtTest>
#include <fstream>
#include <memory>
#include <stdexcept>

#include "../core/fake_links.h"
#include "../core/scripted_operator.h"
#include "../core/temp_dir.h"
#include "authoring/face_time.h"
#include "authoring/profile_file.h"
#include "console/main_window.h"
#include "console/setup_dialog.h"
#include "face_time_dialog.h"
#include "grid_table_model.h"
#include "links/com_port.h"
#include "links/port_names.h"
#include "main_window_view.h"
#include "platform/guarded_application.h"
#include "platform/qt_operator.h"
#include "platform/twips.h"
#include "program_setup_dialog.h"
#include "program_table_view.h"
#include "range/range_display.h"
#include "range_display_view.h"
#include "range_view_widget.h"
#include "setup_dialog_view.h"
#include "simulation/example_program.h"
#include "simulation/simulated_range.h"
#include "text/fault.h"

using namespace halvane;
using halvane::testing::ScriptedOperator;

// Runs `step` on the next popup menu or modal window of type W, once it is up.
template <class W>
static void whenUp(std::function<void(W*)> step) {
    auto* poll = new QTimer;
    QObject::connect(poll, &QTimer::timeout, poll, [poll, step] {
        QWidget* up = QApplication::activePopupWidget() ? QApplication::activePopupWidget()
                                                        : QApplication::activeModalWidget();
        if (auto* window = qobject_cast<W*>(up)) {
            poll->deleteLater();
            step(window);
        }
    });
    poll->start(5);
}

static void whenModal(std::function<void(QWidget*)> step) {
    whenUp<QWidget>(std::move(step));
}

// The main window's view offscreen: the menu bar as the model says, the Program table, the close box.
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

    // A Program opens at its first second, though the load leaves its current cell on the last; the
    // keys then move the current cell, and the table follows it.
    void aProgramOpensAtItsFirstSecondAndTheTableFollowsTheKeys() {
        halvane::testing::TempDir dir;
        const std::string program = (dir.path() / "long.hvn").string();
        std::string text = "\"Target\",2\r\n\"Groups\",\"0\"\r\n\"Seconds\",100\r\n";
        for (int cell = 0; cell < 2 * 101; ++cell) text += "\"Friend\"\r\n";
        std::ofstream(program, std::ios::binary) << text;
        halvane::testing::Console w;
        app::MainWindowView view(w.form);
        view.resize(900, 400);
        view.show();
        w.op.files = {ChosenFile{program, "long.hvn"}};
        view.runCommand("M_Open");
        QCOMPARE(w.form.grid()->Row(), 100);
        QCOMPARE(view.table()->verticalScrollBar()->value(), 0);
        view.table()->setFocus();
        QTest::keyClick(view.table(), Qt::Key_End, Qt::ControlModifier);
        QVERIFY(view.table()->verticalScrollBar()->value() > 0);
        QCOMPARE(view.table()->verticalScrollBar()->value(), view.table()->verticalScrollBar()->maximum());
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

// Editing through the real table offscreen: clicks on cells and headers and the Delete key reach the
// Program as the operator means them.
class GridEditingViewTest : public QObject {
    Q_OBJECT

    std::unique_ptr<halvane::testing::Console> window;
    std::unique_ptr<app::MainWindowView> view;

    app::ProgramTableView* table() { return view->table(); }
    void clickCell(int row, int col, Qt::MouseButton button = Qt::LeftButton,
                   Qt::KeyboardModifiers keys = {}) {
        // The cell's own place, also inside a merged run.
        const QPoint at(table()->columnViewportPosition(col - 1) + table()->columnWidth(col - 1) / 2,
                        table()->rowViewportPosition(row - 1) + table()->rowHeight(row - 1) / 2);
        QTest::mouseClick(table()->viewport(), button, keys, at);
    }
    void clickSeconds(int row) {
        QHeaderView* header = table()->verticalHeader();
        const int y = header->sectionViewportPosition(row - 1) + header->sectionSize(row - 1) / 2;
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, QPoint(header->width() / 2, y));
    }
    static void chooseFriend(Face_time& d) {
        d.setFirst(Face_time::OptFriend);
        d.OKButton();
    }

  private slots:
    void init() {
        window = std::make_unique<halvane::testing::Console>();
        window->state.NumTargets = 3;
        view = std::make_unique<app::MainWindowView>(window->form);
        view->resize(800, 600);
        view->show();
        QVERIFY(QTest::qWaitForWindowExposed(view.get()));
        window->op.script<Settings>(ScriptedOperator::typeAndOk("20"));
        view->runCommand("M_New");
        window->op.log.clear();
    }
    void cleanup() {
        window->state.FileChanged = false;
        view.reset();
        window.reset();
    }

    void rightClickAppliesToTwoHighlightedCellsInTwoColumns() {
        window->state.LeftClickIF = false;
        window->state.RightClickIF = true;
        clickCell(3, 1);
        clickCell(6, 3, Qt::LeftButton, Qt::ControlModifier);
        QCOMPARE(table()->gridModel()->index(5, 2).data(Qt::BackgroundRole).value<QColor>(),
                 table()->palette().color(QPalette::Highlight));
        window->op.script<Face_time>(chooseFriend);
        clickCell(10, 2, Qt::RightButton);
        QCOMPARE(window->grid().TextMatrix(3, 1), std::string("Friend"));
        QCOMPARE(window->grid().TextMatrix(6, 3), std::string("Friend"));
    }

    // One current cell: the mouse and the keys move the grid's, the table shows it, Delete acts on it.
    void keysAndClicksMoveTheCellTheTableShows() {
        const auto current = [this] {
            const QModelIndex i = table()->currentIndex();
            return std::make_pair(i.row() + 1, i.column() + 1);
        };
        for (int row : {5, 8}) {
            window->grid().setRow(row);
            window->form.M_Pause();
        }
        view->refresh();
        clickCell(8, 3);
        clickCell(8, 3, Qt::LeftButton, Qt::ControlModifier);  // current, and no longer highlighted
        QCOMPARE(current(), std::make_pair(8, 3));
        QTest::keyClick(table(), Qt::Key_Up);
        for (int i = 0; i < 3; ++i) QTest::keyClick(table(), Qt::Key_Down);
        QCOMPARE(std::make_pair(window->grid().Row(), window->grid().Col()), std::make_pair(10, 3));
        QCOMPARE(current(), std::make_pair(10, 3));
        QTest::keyClick(table(), Qt::Key_Delete);
        QCOMPARE(window->grid().TextMatrix(8, 3), std::string("Pause"));
        QTest::keyClick(table(), Qt::Key_Left);
        QCOMPARE(current(), std::make_pair(10, 2));
        // On a Pause row Delete empties the row, and the table shows it.
        QTest::keyClick(table(), Qt::Key_Up);
        QTest::keyClick(table(), Qt::Key_Up);
        QTest::keyClick(table(), Qt::Key_Delete);
        QCOMPARE(window->grid().TextMatrix(8, 2), std::string());
        QCOMPARE(table()->gridModel()->index(7, 1).data(Qt::DisplayRole).toString(), QString());
    }

    // A click inside a merged run acts on the cell under the pointer; the corner acts as the seconds
    // column does.
    void clicksOnAMergedRunAndOnTheCornerReachTheirCells() {
        window->op.popupChoices = {"M_Pause"};
        clickSeconds(6);
        QCOMPARE(table()->columnSpan(5, 0), 3);
        clickCell(6, 3);
        QCOMPARE(window->grid().Col(), 3);

        clickCell(9, 2);
        window->op.log.clear();
        window->op.popupChoices = {""};
        QWidget* corner = table()->findChild<QWidget*>("corner");
        QVERIFY(corner);
        QTest::mouseClick(corner, Qt::RightButton, {}, QPoint(3, 3));
        QCOMPARE(window->op.log, std::vector<std::string>{"popup: Popup_Menu"});
        QCOMPARE(window->state.SelRow[3], std::int16_t{9});
    }
};

// The dialogs' views hand what the operator set to their models and show what the models say.
namespace {
void click(QWidget* dialog, const char* name) {
    auto* button = dialog->findChild<QAbstractButton*>(name);
    QVERIFY2(button, name);
    QTest::mouseClick(button, Qt::LeftButton);
}

// A main window with a new Program of 4 targets and 30 seconds.
struct Program : halvane::testing::Console {
    Program() { newProgram(4, "30"); }
};
}  // namespace

class DialogViewsTest : public QObject {
    Q_OBJECT

  private slots:
    void programSetupDialogDrivesItsModel() {
        ScriptedOperator op;
        Settings model(30, op);
        app::ProgramSetupDialog dialog(model);
        auto* text = dialog.findChild<QLineEdit*>("Text1");
        QCOMPARE(text->text(), QString("30"));
        click(&dialog, "CmdPlus_L");
        QCOMPARE(text->text(), QString("31"));
        click(&dialog, "CmdMinus_L");
        QCOMPARE(text->text(), QString("30"));
        text->setText("45");
        click(&dialog, "OKButton");
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QCOMPARE(model.result().value_or(0), 45);
    }

    void faceTimeDialogPassesBothActionsAndTheLength() {
        Program p;
        p.state.SelRow[2] = 5;
        Face_time model(p.state, p.grid());
        app::FaceTimeDialog dialog(model);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        click(&dialog, "OptFoe");
        click(&dialog, "OptDown2");
        dialog.findChild<QLineEdit*>("Text1")->setText("2");
        click(&dialog, "OKButton");
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QCOMPARE(p.grid().TextMatrix(6, 2), std::string("Foe"));
        QCOMPARE(p.grid().TextMatrix(7, 2), std::string("Down"));
    }

    void setupDialogShowsAndStoresTheSettings() {
        Program p;
        halvane::testing::TempDir dir;
        p.state.ConfigFile = dir.file("hvn.cfg");
        p.state.RadioLMC = true;
        frmDisplay model(p.form);
        app::SetupDialog dialog(model);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        QVERIFY(dialog.findChild<QCheckBox*>("cb_LMC")->isChecked());
        QVERIFY(dialog.findChild<QRadioButton*>("optBottom")->isChecked());
        QCOMPARE(dialog.findChild<QLineEdit*>("Txt_NumTargets")->text(), QString("4"));
        click(&dialog, "Command10");
        click(&dialog, "optTop");
        click(&dialog, "cb_Wifi");
        click(&dialog, "OKButton");
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QCOMPARE(int(p.state.NumTargets), 5);
        QVERIFY(!p.state.StartBottom);
        QVERIFY(p.state.RadioWiFi && p.state.RadioLMC);
    }
};

// The simulated range's example Program opens in the console as it was meant: its shape, its wave
// across the targets and its Pause row, with nothing to save.
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

// The range view on screen (offscreen): its size, a tile repainted alone with its new picture, clicks
// mapped to targets, and every corner of a large range reachable with the scroll bars.
namespace {

// Records the rectangles a widget is asked to paint.
struct PaintLog : QObject {
    QRegion painted;
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint) painted += static_cast<QPaintEvent*>(event)->region();
        return false;
    }
};

// A run window's range of LM series targets, laid out from the top left and shown.
struct Shown {
    SharedState state;
    RangeView model{state, RangeWindowKind::Run};
    std::unique_ptr<app::RangeViewWidget> view;
    Shown(int targets, int cols, const char* iconSize, QSize size) {
        state.NumTargets = static_cast<std::int16_t>(targets);
        state.NumCols = static_cast<std::int16_t>(cols);
        state.IconSize = iconSize;
        state.StartBottom = false;
        state.TypeLMSeries = true;
        model.build();
        view = std::make_unique<app::RangeViewWidget>(model);
        view->resize(size);
        view->show();
    }
};

}  // namespace

class RangeViewWidgetTest : public QObject {
    Q_OBJECT

  private slots:
    void aFaceChangeRepaintsOnlyItsTileWithItsPictureAndClicksFindTheTarget() {
        Shown shown(7, 3, "Medium", {400, 300});
        auto& view = *shown.view;
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        QWidget* pic = view.findChild<QWidget*>("PicMain");
        QVERIFY(pic);
        QCOMPARE(pic->logicalDpiY(), 96);  // the figures below are at 15 twips a pixel
        QCOMPARE(pic->size(), QSize(278, 458));
        QCOMPARE(view.pictureRect(5), QRect(133, 158, 60, 70));

        PaintLog log;
        QTest::qWait(50);
        pic->installEventFilter(&log);
        shown.model.setFace(5, wire::Action::Friend);
        QTRY_VERIFY(!log.painted.isEmpty());
        QVERIFY(view.tileBounds(5).contains(log.painted.boundingRect()));
        QVERIFY(log.painted.contains(view.pictureRect(5)));

        QImage expected(60, 70, QImage::Format_RGB32);
        expected.fill(pic->palette().color(QPalette::Window));
        {
            QPainter painter(&expected);
            painter.drawPixmap(0, 0, app::RangeViewWidget::picture("friend_md", {60, 70}));
            painter.setPen(pic->palette().color(QPalette::WindowText));
            painter.drawRect(0, 0, 59, 69);  // the single-line border of a tile not marked by a click
        }
        QCOMPARE(pic->grab(view.pictureRect(5)).toImage().convertToFormat(QImage::Format_RGB32), expected);

        QSignalSpy clicked(&view, &app::RangeViewWidget::tileClicked);
        QTest::mouseClick(pic, Qt::RightButton, Qt::ShiftModifier, view.pictureRect(7).center());
        QTest::mouseClick(pic, Qt::LeftButton, {}, QPoint(2, 2));
        QCOMPARE(clicked.size(), 1);
        QCOMPARE(clicked[0][0].toInt(), 7);
        QCOMPARE(clicked[0][1].value<Qt::MouseButton>(), Qt::RightButton);
        QSignalSpy rowClicked(&view, &app::RangeViewWidget::rowLabelClicked);
        const auto& row2 = shown.model.rowLabels().at(1);
        QTest::mouseClick(pic, Qt::LeftButton, Qt::ControlModifier, view.rowLabelRect(row2).center());
        QCOMPARE(rowClicked.size(), 1);
        QCOMPARE(rowClicked[0][0].toInt(), row2.row);
        QCOMPARE(clicked.size(), 1);
    }

    void theScrollBarsReachEveryCornerOfALargeRange() {
        Shown shown(200, 40, "Large", {800, 600});
        auto& view = *shown.view;
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        QWidget* pic = view.picMain();
        QScrollBar* h = view.horizontalScrollBar();
        QScrollBar* v = view.verticalScrollBar();
        QCOMPARE(std::make_tuple(v->singleStep(), v->pageStep(), h->pageStep()),
                 std::make_tuple(107, view.viewport()->height(), view.viewport()->width()));

        const auto visible = [&] { return QRect(-pic->pos(), view.viewport()->size()); };
        h->setValue(h->maximum());
        v->setValue(v->maximum());
        QCOMPARE(visible().bottomRight(), pic->rect().bottomRight());
        QVERIFY(visible().contains(view.tileBounds(200)));
        h->setValue(0);
        v->setValue(0);
        QVERIFY(visible().contains(view.tileBounds(1)));

        // One notch scrolls the system's number of lines.
        QWheelEvent notch(QPointF(10, 10), view.mapToGlobal(QPointF(10, 10)), {}, QPoint(-120, 0),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(view.viewport(), &notch);
        const int lines = QApplication::wheelScrollLines();
        QCOMPARE(h->value(), 107 * (lines < 1 ? 3 : lines));
    }
};

// Every window is shown through one call: its view is found by the model's type, and a modeless view
// never outlives its model.
namespace {
// A view that reads its model on every paint, so one left holding a dead model trips the sanitizer.
struct Note : Window {
    std::string text = "note";
};
struct NoteView : QWidget {
    NoteView(Note& model, QWidget* parent) : QWidget(parent), model(model) {}
    void paintEvent(QPaintEvent*) override {
        QPainter(this).drawText(rect(), QString::fromStdString(model.text));
    }
    Note& model;
};
struct Unregistered : Window {};
}  // namespace

class WindowRegistryTest : public QObject {
    Q_OBJECT

  private slots:
    void modalShowsTheViewOfTheModelsTypeUntilItCloses() {
        app::QtOperator op;
        testing::ScriptedOperator answers;
        Settings settings(30, answers);
        ProgramNumberDialog number("Download");
        FailedBox failed;
        for (const auto& [model, title] : std::vector<std::pair<Window*, QString>>{
                 {&settings, "Program Setup"}, {&number, "Download"}, {&failed, "Communication Failed"}}) {
            QString shown;
            QTimer::singleShot(0, [&shown] {
                auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
                shown = dialog->windowTitle();
                dialog->reject();
            });
            op.show(*model);
            QCOMPARE(shown, title);
        }
        Unregistered unknown;
        QString what;
        try {
            op.show(unknown, Modality::Modeless);
        } catch (const std::logic_error& e) {
            what = e.what();
        }
        QVERIFY2(what.contains("no view is registered") && what.contains("Unregistered"), qPrintable(what));
    }

    // Whichever of model, view and operator goes first, nothing is left pointing at what has gone.
    void aModelessViewIsShownOnceAndGoesWithItsModel() {
        auto op = std::make_unique<app::QtOperator>();
        op->registry().add<Note, NoteView>();
        auto note = std::make_unique<Note>();
        op->show(*note, Modality::Modeless);
        QPointer<QWidget> view = op->viewOf(*note);
        op->show(*note, Modality::Modeless);
        QVERIFY(view && view->isVisible() && view->isWindow() && op->viewOf(*note) == view);
        view->grab();
        note.reset();
        QVERIFY(view.isNull());

        Note kept;
        op->show(kept, Modality::Modeless);
        op->viewOf(kept)->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!op->viewOf(kept));
        op->show(kept, Modality::Modeless);
        view = op->viewOf(kept);
        op.reset();
        QVERIFY(view.isNull());
    }
};

// Faults inside the handlers of modal dialogs, through the real dialogs and the console's application
// object: the process lives, the operator is told, the dialog and the Program stay as they were.
class ExceptionGuardTest : public QObject {
    Q_OBJECT

    std::vector<std::pair<std::string, bool>> told;

    static app::GuardedApplication& guard() { return *app::GuardedApplication::instance(); }

  private slots:
    void init() {
        told.clear();
        guard().setReporter(
            [this](const std::string& text, bool internal) { told.emplace_back(text, internal); });
    }

    void aFaultInAModalDialogIsToldAndTheDialogStaysOpen() {
        SharedState state;
        state.NumTargets = 3;
        state.LeftClickIF = true;
        state.RightClickIF = false;
        app::QtOperator op;
        halvane::testing::MemoryPositionStore positions;
        Form1 form(state, op, positions);
        app::MainWindowView view(form);
        op.setParentWindow(&view);
        view.resize(800, 600);
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        whenModal([](QWidget* setup) {
            setup->findChild<QLineEdit*>()->setText("30");
            setup->findChild<QPushButton*>("OKButton")->click();
        });
        view.runCommand("M_New");
        QVERIFY(form.grid());
        form.grid()->setTextMatrix(2, 2, "Edge");
        state.FileChanged = false;

        // A left click opens Face Time on the cell; "-40000" and OK is a fault, the dialog stays open.
        bool openAfterFault = false;
        whenModal([&](QWidget* faceTime) {
            faceTime->findChild<QLineEdit*>("Text1")->setText("-40000");
            faceTime->findChild<QRadioButton*>("OptFriend")->setChecked(true);
            QTimer::singleShot(50, faceTime, [&, faceTime] {
                openAfterFault = faceTime->isVisible();
                faceTime->findChild<QPushButton*>("CancelButton")->click();
            });
            QTest::mouseClick(faceTime->findChild<QPushButton*>("OKButton"), Qt::LeftButton);
        });
        app::ProgramTableView* table = view.table();
        const QPoint cell(table->columnViewportPosition(1) + 5, table->rowViewportPosition(4) + 5);
        QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, cell);

        QTRY_COMPARE(told.size(), std::size_t{1});
        QCOMPARE(
            told[0],
            std::make_pair(
                std::string("The time \"-40000\" is not a number of seconds from -32768 to 32767."), false));
        QVERIFY(openAfterFault);
        QCOMPARE(form.grid()->TextMatrix(5, 2) + "|" + form.grid()->TextMatrix(2, 2), std::string("|Edge"));
        QVERIFY(!state.FileChanged && view.isVisible());
        QCOMPARE(guard().internalErrors(), 0);
    }

    // Anything else a handler lets escape is caught the same way and counted apart, so tests and
    // randomized runs can tell a fault the console foresaw from one it did not.
    void anyOtherExceptionIsCaughtCountedAndTold() {
        const int before = guard().internalErrors();
        QTimer::singleShot(0, [] { throw std::out_of_range("vector index 7"); });
        QTimer::singleShot(0, [] { throw std::out_of_range("vector index 7"); });
        QTRY_COMPARE(told.size(), std::size_t{1});
        QCOMPARE(guard().internalErrors(), before + 2);
        QVERIFY(told[0].second && told[0].first.find("vector index 7") != std::string::npos &&
                told[0].first.find("The Program is kept") != std::string::npos);
    }
};

namespace {

// A port whose line can be pulled out.
class PullablePort : public halvane::testing::FakeSerialPort {
  public:
    void pull() {
        opened.clear();
        reportLost("the device was unplugged");
    }
};

// Each window port the form makes is present on port 1; `port` follows the last one made.
void attachPullablePorts(Form1& form, PullablePort*& port) {
    form.attachLinks(nullptr, nullptr, [&port] {
        auto made = std::make_unique<PullablePort>();
        made->present.insert(PortNames::defaultDevice(1));
        port = made.get();
        return made;
    });
}

// The main window on the shared port, present on port 1, with a port factory when a test gives one.
struct ConsoleOnPort {
    explicit ConsoleOnPort(Form1::PortFactory newPort = {}) {
        port.present.insert(PortNames::defaultDevice(1));
        form.attachLinks(&comPort, nullptr, std::move(newPort));
        form.Load();
    }
    // The visible top-level window of that name, after the menu command `item`.
    QWidget* open(const char* item, const char* name) {
        form.run(item);
        for (QWidget* w : QApplication::topLevelWidgets())
            if (w->objectName() == name && w->isVisible()) return w;
        return nullptr;
    }
    SharedState state;
    app::QtOperator op;
    halvane::testing::MemoryPositionStore positions;
    Form1 form{state, op, positions};
    PullablePort port;
    PortNames names;
    ComPortModule comPort{state, port, names, op};
};

QPushButton* button(QWidget* window, const char* name) {
    return window->findChild<QPushButton*>(name);
}

}  // namespace

// The run window as the operator meets it: Run opens it over the Program, the steps come on the
// application's one timer and show at once, a line that goes away is told, and Exit closes it with its
// port and keeps its place.
class RangeRunningViewTest : public QObject {
    Q_OBJECT

  private slots:
    void runPlaysOnTheApplicationsTimerToldALostLineAndExitClosesThePort() {
        halvane::testing::TempDir dir;
        const std::string program = (dir.path() / "two.hvn").string();
        std::ofstream(program, std::ios::binary) << "\"Target\",2\r\n\"Groups\",\"0\"\r\n\"Seconds\",3\r\n"
                                                    "\"Friend\"\r\n\"Foe\"\r\n\"Foe\"\r\n\"Foe\"\r\n"
                                                    "\"Edge\"\r\n\"Down\"\r\n";
        SharedState state;
        state.NumTargets = 2;
        state.StartBottom = false;
        state.RadioUSB = true;
        app::QtOperator op;
        halvane::testing::MemoryPositionStore positions;
        Form1 form(state, op, positions);
        PullablePort* port = nullptr;
        attachPullablePorts(form, port);
        form.Load();
        QVERIFY(form.LoadProgram({program, "two.hvn"}));

        QString shown, afterLoss, told;
        std::string written;
        bool reopened = false, closedOnExit = false;
        whenModal([&](QWidget* window) {
            button(window, "BtnConnect")->click();
            button(window, "BtnStart")->click();
            // The second step comes a second later on the application's timer, and shows without a click.
            QTest::qWait(1300);
            shown = window->findChild<QLineEdit*>("txtTimer")->text();
            written = port->written;
            whenModal([&told](QWidget* box) {
                told = static_cast<QMessageBox*>(box)->text();
                static_cast<QMessageBox*>(box)->accept();
            });
            port->pull();
            afterLoss = button(window, "BtnConnect")->text();
            button(window, "BtnConnect")->click();
            reopened = port->isOpen();
            button(window, "BtnExit")->click();
            closedOnExit = !port->isOpen();
        });
        form.run("M_Run");

        QCOMPARE(shown, QString(" 1"));
        QCOMPARE(QByteArray::fromStdString(written).toHex(' '), QByteArray("f3 01 f2 02 f2 01"));
        QVERIFY2(told.startsWith("Comm Port 1: the line went away (the device was unplugged)"),
                 qPrintable(told));
        QCOMPARE(afterLoss, QString("Connect"));
        QVERIFY(reopened && closedOnExit);
        QVERIFY(!positions.GetAllSettings(kPositionAppName, "Range Running").empty());
    }
};

// The live window as the operator meets it: Live Mode opens it with its port, clicks on tiles with Ctrl
// build the set that the popup's command reaches, and a poll of hit scores shows its progress and stops
// on Esc; a second Esc leaves.
class LiveModeViewTest : public QObject {
    Q_OBJECT

  private slots:
    void clicksMarkThePopupCommandsAndEscStopsAPollThenLeaves() {
        SharedState state;
        state.NumTargets = 5;
        state.StartBottom = false;
        state.RadioUSB = true;
        state.TypeLMSeries = true;
        app::QtOperator op;
        halvane::testing::MemoryPositionStore positions;
        Form1 form(state, op, positions);
        PullablePort* port = nullptr;
        attachPullablePorts(form, port);
        form.Load();

        std::string commanded;
        QString progress, title;
        bool stayedAfterEsc = false, pollStopped = false, closedOnEsc = false;
        whenModal([&](QWidget* window) {
            title = window->windowTitle();
            auto* range = window->findChild<app::RangeViewWidget*>();
            QWidget* pic = range->picMain();
            QTest::mouseClick(pic, Qt::LeftButton, Qt::ControlModifier, range->pictureRect(4).center());
            QTest::mouseClick(pic, Qt::LeftButton, Qt::ControlModifier, range->pictureRect(2).center());
            // The right button opens the popup on the set, Ctrl keeping the marks made so far.
            QTimer::singleShot(50, [] {
                auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
                if (!menu) return;
                for (QAction* action : menu->actions())
                    if (action->objectName() == "M_Foe") menu->setActiveAction(action);
                QTest::keyClick(menu, Qt::Key_Return);
            });
            QTest::mouseClick(pic, Qt::RightButton, Qt::ControlModifier, range->pictureRect(3).center());
            commanded = std::exchange(port->written, {});

            button(window, "BtnGetHitScores")->click();
            auto* label = window->findChild<QLabel*>("pollProgress");
            progress = label->isVisible() ? label->text() : QString();
            QTest::keyClick(window, Qt::Key_Escape);
            stayedAfterEsc = window->isVisible();
            pollStopped = !label->isVisible();
            QTest::keyClick(window, Qt::Key_Escape);
            closedOnEsc = !window->isVisible() && !port->isOpen();
        });
        form.run("M_LiveMode");

        QCOMPARE(title, QString("Live Mode"));
        QCOMPARE(QByteArray::fromStdString(commanded).toHex(' '), QByteArray("f2 02 f2 03 f2 04"));
        QCOMPARE(progress, QString("Reading hit scores: target 1 of 5 (Esc stops)"));
        QVERIFY(stayedAfterEsc && pollStopped && closedOnEsc);
        QVERIFY(!positions.GetAllSettings(kPositionAppName, "Live Mode").empty());
    }
};

// The range layout window: a left click on a tile, the popup and the input box put a serial number
// on the tile at once and into hvn.cfg.
class RangeDisplayViewTest : public QObject {
    Q_OBJECT

  private slots:
    void aClickedTileTakesItsSerialNumberThroughThePopupAndTheInputBox() {
        halvane::testing::TempDir dir;
        SharedState state;
        state.NumTargets = 3;
        state.TypeLMSeries = true;
        state.ConfigFile = dir.file("hvn.cfg");
        app::QtOperator op;
        RangeDisplay model(state, op);
        model.Load();
        QString box;
        bool redrawn = false;
        whenUp<app::RangeDisplayView>([&](app::RangeDisplayView* window) {
            auto* range = window->findChild<app::RangeViewWidget*>();
            const QImage before = range->picMain()->grab(range->tileBounds(2)).toImage();
            whenUp<QMenu>([&](QMenu* menu) {
                whenUp<QInputDialog>([&](QInputDialog* input) {
                    box = input->windowTitle() + ": " + input->labelText() + " [" + input->textValue() + "]";
                    input->setTextValue("777");
                    input->accept();
                });
                menu->setActiveAction(menu->actions().value(0));
                QTest::keyClick(menu, Qt::Key_Return);
            });
            QTest::mouseClick(range->picMain(), Qt::LeftButton, {}, range->pictureRect(2).center());
            redrawn = range->picMain()->grab(range->tileBounds(2)).toImage() != before;
            button(window, "OKButton")->click();
        });
        op.show(model);

        QCOMPARE(box, QString("Serial Number: Enter Serial Number [0]"));
        QVERIFY(redrawn && model.view().tiles()[1].serialText == "SN 777");
        QCOMPARE(halvane::testing::readBytes(dir / "hvn.cfg"), std::string("[Serial Num]\r\n 2= 777\r\n"));
    }
};

// LM Setup as the operator meets it: three tabs with Utility in front, the lists of the boxes, Save
// disabled until a read, and the window's own port open while it is up.
class TargetSetupViewTest : public QObject {
    Q_OBJECT

  private slots:
    void theWindowShowsItsTabsAndListsWithItsPortOpen() {
        SharedState state;
        state.RadioUSB = state.TypeLMSeries = true;
        app::QtOperator op;
        halvane::testing::MemoryPositionStore positions;
        Form1 form(state, op, positions);
        PullablePort* port = nullptr;
        attachPullablePorts(form, port);
        form.Load();
        QStringList tabs;
        int targetNumbers = 0;
        QString serial, saveEnabled;
        bool portOpen = false;
        whenModal([&](QWidget* window) {
            auto* tabWidget = window->findChild<QTabWidget*>("SSTab1");
            for (int i = 0; i < tabWidget->count(); ++i) tabs << tabWidget->tabText(i);
            tabs << tabWidget->tabText(tabWidget->currentIndex());
            targetNumbers = window->findChild<QComboBox*>("Cmb_Target_Num")->count();
            serial = window->findChild<QLabel*>("LBL_SN")->text();
            saveEnabled = button(window, "Command2")->isEnabled() ? "enabled" : "disabled";
            portOpen = port->isOpen();
            button(window, "Command3")->click();
        });
        form.run("M_LM_SETUP");
        QCOMPARE(tabs, QStringList({"Utility", "Hit Setting", "Target Control", "Utility"}));
        QCOMPARE(targetNumbers, 201);
        QCOMPARE(serial, QString("SN"));
        QCOMPARE(saveEnabled, QString("disabled"));
        QVERIFY(portOpen);
    }
};

// Hit Scores as the operator meets it: the menu opens the window beside the main one, the grid as its
// load makes it, a radio round's progress, and Esc stopping the round with the grid at one row a target.
class HitScoresViewTest : public QObject {
    Q_OBJECT

  private slots:
    void theMenuOpensTheGridAndARoundShowsItsProgressUntilEsc() {
        ConsoleOnPort console;
        console.state.RadioUSB = console.state.TypeLMSeries = true;
        console.state.NumTargets = 4;
        QWidget* window = console.open("M_HitScores", "FrmHitScores");
        QVERIFY(window);
        auto* grid = window->findChild<QTableWidget*>("Grid");
        QCOMPARE(grid->rowCount(), 200);
        QCOMPARE(grid->horizontalHeaderItem(1)->text(), QString("Hit Score"));
        QCOMPARE(grid->item(199, 0)->text(), QString("200"));

        button(window, "CmdDownload")->click();
        auto* progress = window->findChild<QLabel*>("progress");
        QTRY_COMPARE_WITH_TIMEOUT(progress->text(), QString("Reading hit scores: target 2 of 4 (Esc stops)"),
                                  2000);
        QTest::keyClick(window, Qt::Key_Escape);
        QVERIFY(window->isVisible());
        QCOMPARE(grid->rowCount(), 4);
        QVERIFY(!progress->isVisible());
        window->close();
    }

    // Configure in the hit score window opens the port search, which paints and says what it asks
    // while it searches, then offers the ports; OK keeps the radio's port.
    void configureOpensThePortSearchWhichPaintsWhileItAsks() {
        halvane::testing::TempDir dir;
        // Ports 2 and 5 exist; the radio on 5 answers its escape.
        struct RadioPort : halvane::testing::FakeSerialPort {
            RadioPort() { present = {PortNames::defaultDevice(2), PortNames::defaultDevice(5)}; }
            bool write(std::string_view bytes) override {
                if (bytes == "+++" && opened == PortNames::defaultDevice(5))
                    QTimer::singleShot(20, [this] { receive("OK\r"); });
                return FakeSerialPort::write(bytes);
            }
        };
        ConsoleOnPort console([] { return std::make_unique<RadioPort>(); });
        SharedState& state = console.state;
        state.RadioUSB = state.TypeLMSeries = true;
        state.ConfigFile = (dir.path() / "hvn.cfg").string();
        QWidget* scores = console.open("M_HitScores", "FrmHitScores");
        QVERIFY(scores);
        QString asking, finding;
        QStringList captions;
        bool absentDisabled = false, radioChecked = false;
        whenModal([&](QWidget* window) {
            QTRY_COMPARE_WITH_TIMEOUT(window->findChild<QLabel*>("asking")->text(),
                                      QString("Asking Com 2, Com 5 for a transmitter"), 2000);
            asking = window->findChild<QLabel*>("asking")->text();
            QTRY_VERIFY_WITH_TIMEOUT(button(window, "OKButton")->isEnabled(), 3000);
            finding = window->findChild<QLabel*>("Label1")->text();
            for (const int port : {1, 14, 15})
                captions << window->findChild<QRadioButton*>(QString("Option1_%1").arg(port))->text();
            absentDisabled = !window->findChild<QRadioButton*>("Option1_3")->isEnabled();
            radioChecked = window->findChild<QRadioButton*>("Option1_5")->isChecked();
            button(window, "OKButton")->click();
        });
        scores->findChild<QAction*>("M_Config")->trigger();
        QCOMPARE(asking, QString("Asking Com 2, Com 5 for a transmitter"));
        QCOMPARE(finding, QString("Radio Found on Com Port  5"));
        QCOMPARE(captions, QStringList({"Com 1", "Com 14", "Com15"}));
        QVERIFY(absentDisabled && radioChecked);
        QCOMPARE(state.ComPort, std::int16_t{5});
        QCOMPARE(QString::fromStdString(ReadIni(state.ConfigFile, "Settings", "ComPort")), QString("5"));
        scores->close();
    }
};

// Radio Setup as the operator meets it: the menu opens one window, the serial box takes digits and goes
// with the USB radio, a read runs its progress window on the application's timer for three seconds and
// tells the radio's silence after it, and Close lets the window go.
class RadioSetupViewTest : public QObject {
    Q_OBJECT

  private slots:
    void theMenuOpensOneWindowWhoseReadRunsItsProgressWindowThenTellsTheSilence() {
        ConsoleOnPort console;
        PullablePort& port = console.port;
        console.form.run("M_RadioSetup");
        const QPointer<QWidget> window = console.open("M_RadioSetup", "frmRadioSetup");
        QVERIFY(window);
        int windows = 0;
        for (QWidget* w : QApplication::topLevelWidgets()) windows += w->objectName() == "frmRadioSetup";
        QCOMPARE(windows, 1);
        QCOMPARE(window->windowTitle(), QString("Raido Setup"));
        auto* serial = window->findChild<QLineEdit*>("txtLMSN");
        QTest::keyClicks(serial, "18a75");
        QCOMPARE(serial->text(), QString("1875"));
        emit window->findChild<QComboBox*>("CmbRadio")->textActivated("USB Radio");
        QVERIFY(!serial->isVisible());

        QStringList progress;
        QString told;
        whenModal([&](QWidget* w) {
            progress << w->windowTitle();
            for (auto* label : w->findChildren<QLabel*>()) progress << label->text();
        });
        whenUp<QMessageBox>([&](QMessageBox* box) {
            told = box->text();
            box->accept();
        });
        button(window, "Command3")->click();
        QCOMPARE(progress.mid(0, 2), QStringList({"Sending", "Receiving data please wait."}));
        QCOMPARE(told, QString("No reply from the radio"));
        QCOMPARE(port.written, std::string("+++ATHP\rATCN\r"));
        QVERIFY(!port.isOpen());
        button(window, "Command2")->click();
        QTRY_VERIFY(window.isNull());
    }
};

// One application object for all, the console's own, which catches what a handler lets escape.
int main(int argc, char** argv) {
    app::GuardedApplication application(argc, argv);
    application.setAttribute(Qt::AA_Use96Dpi, true);
    MainWindowViewTest mainWindow;
    GridEditingViewTest gridEditing;
    DialogViewsTest dialogs;
    ExampleProgramTest example;
    RangeViewWidgetTest rangeView;
    WindowRegistryTest registry;
    ExceptionGuardTest guard;
    RangeRunningViewTest run;
    LiveModeViewTest live;
    RangeDisplayViewTest layout;
    TargetSetupViewTest targetSetup;
    HitScoresViewTest hitScores;
    RadioSetupViewTest radioSetup;
    int failed = 0;
    for (QObject* test : std::initializer_list<QObject*>{&mainWindow, &gridEditing, &dialogs, &example,
                                                         &rangeView, &registry, &guard, &run, &live, &layout,
                                                         &targetSetup, &hitScores, &radioSetup}) {
        failed += QTest::qExec(test, argc, argv);
        // Closing the main window ends the application's event loop, and a loop ended so refuses to
        // run again, the modal dialogs' of the next test too, until the application's own loop has
        // run once.
        QTimer::singleShot(0, [] { QCoreApplication::exit(0); });
        QCoreApplication::exec();
    }
    return failed;
}

#include "console_views_test.moc"
