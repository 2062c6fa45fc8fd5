// Every window is shown through one call: its view is found by the model's type, and a modeless view
// never outlives its model.

#include <QDialog>
#include <QPainter>
#include <QPointer>
#include <QTimer>
#include <QtTest>
#include <memory>

#include "../core/scripted_operator.h"
#include "platform/qt_operator.h"

using namespace halvane;

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

QTEST_MAIN(WindowRegistryTest)
#include "window_registry_test.moc"
