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
using halvane::testing::MemoryPositionStore;
using halvane::testing::ScriptedOperator;

class GridEditingViewTest : public QObject {
    Q_OBJECT

    SharedState state;
    ScriptedOperator op;
    MemoryPositionStore store;
    std::unique_ptr<Form1> form;
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
        state = SharedState{};
        state.NumTargets = 3;
        op = ScriptedOperator{};
        form = std::make_unique<Form1>(state, op, store);
        view = std::make_unique<app::MainWindowView>(*form);
        view->resize(800, 600);
        view->show();
        QVERIFY(QTest::qWaitForWindowExposed(view.get()));
        op.settingsScript.push_back(ScriptedOperator::typeAndOk("20"));
        view->runCommand("M_New");
        op.log.clear();
    }
    void cleanup() {
        state.FileChanged = false;
        view.reset();
        form.reset();
    }

    void plainClickOpensFaceTimeInTheLeftClickInterface() {
        state.LeftClickIF = true;
        state.RightClickIF = false;
        op.faceTimeScript.push_back(chooseFriend);
        clickCell(4, 2);
        QCOMPARE(op.log, std::vector<std::string>{"show: Face Time"});
        QCOMPARE(form->grid()->TextMatrix(4, 2), std::string("Friend"));
        QCOMPARE(table()->gridModel()->index(3, 1).data(Qt::BackgroundRole).value<QColor>(),
                 QColor(255, 0, 0));
    }

    void rightClickAppliesToTwoHighlightedCellsInTwoColumns() {
        state.LeftClickIF = false;
        state.RightClickIF = true;
        clickCell(3, 1);
        clickCell(6, 3, Qt::LeftButton, Qt::ControlModifier);
        QCOMPARE(table()->gridModel()->index(5, 2).data(Qt::BackgroundRole).value<QColor>(),
                 table()->palette().color(QPalette::Highlight));
        op.faceTimeScript.push_back(chooseFriend);
        clickCell(10, 2, Qt::RightButton);
        QCOMPARE(form->grid()->TextMatrix(3, 1), std::string("Friend"));
        QCOMPARE(form->grid()->TextMatrix(6, 3), std::string("Friend"));
        QCOMPARE(form->grid()->TextMatrix(10, 2), std::string());
    }

    void deleteOnAPauseRowEmptiesIt() {
        op.popupChoices = {"M_Pause"};
        clickSeconds(8);
        QCOMPARE(op.log.front(), std::string("popup: Popup_Menu"));
        QCOMPARE(form->grid()->TextMatrix(8, 2), std::string("Pause"));
        QCOMPARE(table()->columnSpan(7, 0), 3);
        QTest::keyClick(table(), Qt::Key_Delete);
        QCOMPARE(form->grid()->TextMatrix(8, 2), std::string());
        QCOMPARE(table()->gridModel()->index(7, 1).data(Qt::DisplayRole).toString(), QString());
    }
};

QTEST_MAIN(GridEditingViewTest)
#include "grid_editing_view_test.moc"
