// Editing through the real table offscreen: clicks on cells and headers and the Delete key reach the
// Program as the operator means them.

#include <QHeaderView>
#include <QtTest>

#include "../core/scripted_operator.h"
#include "console/main_window.h"
#include "grid_table_model.h"
#include "main_window_view.h"
#include "program_table_view.h"

using namespace halvane;
using halvane::testing::ScriptedOperator;

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

QTEST_MAIN(GridEditingViewTest)
#include "grid_editing_view_test.moc"
