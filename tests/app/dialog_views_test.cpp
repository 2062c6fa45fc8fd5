// The dialogs' views hand what the operator set to their models and show what the models say.

#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QtTest>

#include "../core/scripted_operator.h"
#include "../core/temp_dir.h"
#include "authoring/face_time.h"
#include "console/main_window.h"
#include "console/setup_dialog.h"
#include "face_time_dialog.h"
#include "program_setup_dialog.h"
#include "setup_dialog_view.h"

using namespace halvane;
using halvane::testing::ScriptedOperator;

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

QTEST_MAIN(DialogViewsTest)
#include "dialog_views_test.moc"
