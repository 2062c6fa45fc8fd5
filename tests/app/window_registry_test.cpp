// Every window is shown through one call: the view is found by the model's type, shown modal or
// modeless, and a modeless view never outlives its model.

#include <QDialog>
#include <QPainter>
#include <QPointer>
#include <QTimer>
#include <QtTest>
#include <memory>

#include "../core/scripted_operator.h"
#include "authoring/about_box.h"
#include "authoring/program_setup.h"
#include "links/transmitter_windows.h"
#include "platform/qt_operator.h"

using namespace halvane;

namespace {
// A window of the test's own whose view reads the model on every paint, so a view left holding a
// dead model is caught by the address sanitizer.
struct Note : Window {
    std::string text = "note";
};
class NoteView : public QWidget {
  public:
    NoteView(Note& model, QWidget* parent) : QWidget(parent), m_model(model) {}

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter(this).drawText(rect(), QString::fromStdString(m_model.text));
    }

  private:
    Note& m_model;
};
struct Unregistered : Window {};

void dropClosedViews() {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}
}  // namespace

class WindowRegistryTest : public QObject {
    Q_OBJECT

  private slots:
    void modalShowsTheViewOfTheModelsTypeAndReturnsWhenItCloses() {
        app::QtOperator op;
        testing::ScriptedOperator answers;
        Settings settings(30, answers);
        AboutBox about;
        ProgramNumberDialog number("Download");
        FailedBox failed;
        const std::vector<std::pair<Window*, QString>> windows = {{&settings, "Program Setup"},
                                                                  {&about, "About Halvane"},
                                                                  {&number, "Download"},
                                                                  {&failed, "Communication Failed"}};
        for (const auto& [model, title] : windows) {
            QString shown;
            QTimer::singleShot(0, [&shown] {
                auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
                if (!dialog) return;
                shown = dialog->windowTitle();
                dialog->reject();
            });
            op.show(*model);
            QCOMPARE(shown, title);
        }
    }

    void anUnregisteredModelIsAnErrorNamingItsType() {
        app::QtOperator op;
        Unregistered model;
        QString what;
        try {
            op.show(model, Modality::Modeless);
        } catch (const std::logic_error& e) {
            what = e.what();
        }
        QVERIFY2(what.contains("no view is registered") && what.contains("Unregistered"), qPrintable(what));
        QVERIFY(!op.viewOf(model));
    }

    void aModelessViewIsShownOnceAndGoesWithItsModel() {
        app::QtOperator op;
        op.registry().add<Note, NoteView>();
        auto note = std::make_unique<Note>();
        op.show(*note, Modality::Modeless);
        QPointer<QWidget> view = op.viewOf(*note);
        QVERIFY(view && view->isVisible() && view->isWindow());
        op.show(*note, Modality::Modeless);
        QCOMPARE(op.viewOf(*note), view.data());
        view->grab();
        note.reset();
        QVERIFY(view.isNull());
        QApplication::processEvents();
    }

    // Whichever of model, view and operator goes first, nothing is left pointing at what has gone.
    void aModelessModelOutlivesItsClosedView() {
        Note note;
        {
            app::QtOperator op;
            op.registry().add<Note, NoteView>();
            op.show(note, Modality::Modeless);
            QPointer<QWidget> first = op.viewOf(note);
            first->close();
            dropClosedViews();
            QVERIFY(first.isNull() && !op.viewOf(note));
            op.show(note, Modality::Modeless);  // a new view after the operator closed the last one
            QVERIFY(op.viewOf(note) && op.viewOf(note)->isVisible());
        }
        note.text = "the operator's side has gone; the model goes on alone";
    }
};

QTEST_MAIN(WindowRegistryTest)
#include "window_registry_test.moc"
