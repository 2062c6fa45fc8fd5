// Editing through the real table offscreen: clicks on cells and headers and the Delete key reach the
// Program as the operator means them.

#include <QHeaderView>
#include <QtTest>

#include "../core/scripted_operator.h"
#include "authoring/main_window.h"
#include "grid_table_model.h"
#include "main_window_view.h"
#include "program_table_view.h"

using namespace halvane;
using halvane::testing::ScriptedOperator;

class GridEditingViewTest : public QObject {
    Q_OBJECT

    std::unique_ptr<halvane::testing::Window> window;
    std::unique_ptr<app::MainWindowView> view;

    app::ProgramTableView* table() { return view->table(); }
    void clickCell(int row, int col, Qt::MouseButton button = Qt::LeftButton,
                   Qt::KeyboardModifiers keys = {}) {
        const QRect cell = table()->visualRect(table()->gridModel()->index(row - 1, col - 1));
        QTest::mouseClick(table()->viewport(), button, keys, cell.center());
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
        window = std::make_unique<halvane::testing::Window>();
        window->state.NumTargets = 3;
        view = std::make_unique<app::MainWindowView>(window->form);
        view->resize(800, 600);
        view->show();
        QVERIFY(QTest::qWaitForWindowExposed(view.get()));
        window->op.settingsScript.push_back(ScriptedOperator::typeAndOk("20"));
        view->runCommand("M_New");
        window->op.log.clear();
    }
    void cleanup() {
        window->state.FileChanged = false;
        view.reset();
        window.reset();
    }

    void plainClickOpensFaceTimeInTheLeftClickInterface() {
        window->state.LeftClickIF = true;
        window->state.RightClickIF = false;
        window->op.faceTimeScript.push_back(chooseFriend);
        clickCell(4, 2);
        QCOMPARE(window->op.log, std::vector<std::string>{"show: Face Time"});
        QCOMPARE(window->grid().TextMatrix(4, 2), std::string("Friend"));
    }

    void rightClickAppliesToTwoHighlightedCellsInTwoColumns() {
        window->state.LeftClickIF = false;
        window->state.RightClickIF = true;
        clickCell(3, 1);
        clickCell(6, 3, Qt::LeftButton, Qt::ControlModifier);
        QCOMPARE(table()->gridModel()->index(5, 2).data(Qt::BackgroundRole).value<QColor>(),
                 table()->palette().color(QPalette::Highlight));
        window->op.faceTimeScript.push_back(chooseFriend);
        clickCell(10, 2, Qt::RightButton);
        QCOMPARE(window->grid().TextMatrix(3, 1), std::string("Friend"));
        QCOMPARE(window->grid().TextMatrix(6, 3), std::string("Friend"));
    }

    void deleteOnAPauseRowEmptiesIt() {
        window->op.popupChoices = {"M_Pause"};
        clickSeconds(8);
        QCOMPARE(window->grid().TextMatrix(8, 2), std::string("Pause"));
        QCOMPARE(table()->columnSpan(7, 0), 3);
        QTest::keyClick(table(), Qt::Key_Delete);
        QCOMPARE(window->grid().TextMatrix(8, 2), std::string());
        QCOMPARE(table()->gridModel()->index(7, 1).data(Qt::DisplayRole).toString(), QString());
    }
};

QTEST_MAIN(GridEditingViewTest)
#include "grid_editing_view_test.moc"
