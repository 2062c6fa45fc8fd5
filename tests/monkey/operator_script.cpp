#include "operator_script.h"

#include <sys/stat.h>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <stdexcept>

#include "../core/scripted_operator.h"
#include "authoring/about_box.h"
#include "authoring/grid_setup.h"
#include "authoring/program_file.h"
#include "authoring/startup.h"
#include "grid_table_model.h"
#include "main_window_view.h"
#include "platform/console_links.h"
#include "platform/guarded_application.h"
#include "platform/qt_operator.h"
#include "program_table_view.h"

extern "C" void __sanitizer_set_death_callback(void (*callback)()) __attribute__((weak));

namespace halvane::monkey {

namespace {

std::vector<std::string>* g_trace = nullptr;  // of the run under way

const std::vector<std::string> kCommands = {"M_New",  "M_New",      "M_Open",    "M_Open", "M_Close",
                                            "M_Save", "M_Save_As",  "M_Save_As", "M_Time", "M_TargetSetup",
                                            "M_Send", "M_Download", "M_About",   "M_Run",  "M_LiveMode"};
struct Click {
    Qt::MouseButton button;
    Qt::KeyboardModifiers keys;
    const char* name;
};
const std::vector<Click> kClicks = {{Qt::LeftButton, {}, "left"},
                                    {Qt::LeftButton, {}, "left"},
                                    {Qt::LeftButton, Qt::ControlModifier, "Ctrl+left"},
                                    {Qt::RightButton, {}, "right"},
                                    {Qt::RightButton, {}, "right"},
                                    {Qt::RightButton, Qt::ControlModifier, "Ctrl+right"},
                                    {Qt::MiddleButton, {}, "middle"},
                                    {Qt::MiddleButton, Qt::ControlModifier, "Ctrl+middle"}};
const std::vector<std::pair<Qt::Key, const char*>> kKeys = {
    {Qt::Key_Up, "Up"},        {Qt::Key_Down, "Down"},      {Qt::Key_Left, "Left"},
    {Qt::Key_Right, "Right"},  {Qt::Key_PageUp, "Page Up"}, {Qt::Key_PageDown, "Page Down"},
    {Qt::Key_Home, "Home"},    {Qt::Key_End, "End"},        {Qt::Key_Delete, "Delete"},
    {Qt::Key_Delete, "Delete"}};

// A save writes a new file and renames it over the old one, so a file saved since has a new inode.
std::pair<dev_t, ino_t> fileIdentity(const std::string& path) {
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0 || !S_ISREG(info.st_mode)) return {0, 0};
    return {info.st_dev, info.st_ino};
}

// The Program as it stood when its Save dialog was accepted.
struct SavedProgram {
    std::string path;
    std::pair<dev_t, ino_t> before;
    SharedState state;
    bool complete = false;           // the grid had every cell the file takes
    std::vector<std::string> cells;  // seconds 1 to NumSeconds, the Program's columns in each
};

std::string cellName(int row, int col) {
    return "(" + std::to_string(row) + ", " + std::to_string(col) + ")";
}

// What an operator types into a box, plausible or hostile.
const std::vector<QString> kTexts = {"1",   "2",   "5", "30",  "-40000", "0",  "99999", "abc",
                                     "2.7", "&HA", "",  "200", "32765",  "-1", " 7",    "1e2"};
// Answers to one window before it is closed politely, and before it is closed by force.
constexpr int kPatience = 6;
constexpr int kForce = kPatience + 3;

// Answers every modal window and popup menu while it is up, from a timer that keeps firing inside
// their nested event loops: it types into the boxes, presses buttons, picks files and menu items as
// the script's bytes say, has the main window repaint underneath, and in the end always closes the
// window, so that a run never waits on a keyboard.
class DialogAnswerer {
  public:
    // A window still up this long after its event began is a hang, and is closed by force.
    static constexpr int kHangMs = 20000;

    DialogAnswerer(Choices& choices, const ScratchRange& range, QWidget& mainWindow,
                   std::vector<std::string>& trace)
        : m_choices(choices), m_range(range), m_mainWindow(mainWindow), m_trace(trace) {
        QObject::connect(&m_timer, &QTimer::timeout, [this] { tick(); });
        m_timer.start(2);
        m_eventClock.start();
    }

    // Called when a Save dialog has been accepted, before the console writes the file.
    std::function<void(const QString& path)> onSaveAccepted;
    // Each event starts the counts afresh: the popup menu is one window shown again and again.
    void beginEvent() {
        m_eventClock.restart();
        m_actionCounts.clear();
    }
    std::vector<std::string> takeFindings() { return std::exchange(m_findings, {}); }
    int answered() const { return m_answered; }

  private:
    void note(const QString& window, const QString& what) {
        m_trace.push_back(("[" + window + "] " + what).simplified().prepend("    ").toStdString());
    }

    // A window seen again after a message box on top of it keeps its count, so that a dialog that
    // answers every OK with a message is still closed in the end.
    int& actionsOn(QWidget* window) {
        std::erase_if(m_actionCounts, [](const auto& c) { return c.first.isNull(); });
        for (auto& [known, count] : m_actionCounts)
            if (known == window) return count;
        return m_actionCounts.emplace_back(window, 0).second;
    }

    void tick() {
        QWidget* window = QApplication::activePopupWidget();
        if (!window) window = QApplication::activeModalWidget();
        if (m_queued || !window) return;
        if (window != m_current) m_ticks = 0;
        m_current = window;
        if (m_eventClock.elapsed() > kHangMs) {
            m_findings.push_back("\"" + window->windowTitle().toStdString() + "\" was still up " +
                                 std::to_string(kHangMs / 1000) + " s after its event began");
            m_eventClock.restart();
            close(*window, true);
            return;
        }
        if (++m_ticks < 3) return;  // it shows and paints first
        // Answered from the event loop, not from within this timer: an answer may open a nested loop of
        // its own, and this timer has to keep firing in there.
        m_queued = true;
        QTimer::singleShot(0, &m_timer, [this, target = QPointer<QWidget>(window)] {
            m_queued = false;
            if (target && target->isVisible() && target == m_current) answer(target);
        });
    }

    void answer(QWidget* window) {
        // A progress window closes itself when its dialogue ends.
        const bool progress = window->objectName() == "ProgressWindow";
        if (int& actions = actionsOn(window); !progress && ++actions > kPatience) {
            if (actions > kForce)
                m_findings.push_back("\"" + window->windowTitle().toStdString() + "\" would not close");
            close(*window, actions > kForce);
            return;
        }
        ++m_answered;
        m_mainWindow.grab();  // whatever is up, the window underneath paints meanwhile
        if (progress) return;
        if (auto* menu = qobject_cast<QMenu*>(window))
            answerMenu(*menu);
        else if (auto* box = qobject_cast<QMessageBox*>(window))
            answerMessageBox(*box);
        else if (auto* files = qobject_cast<QFileDialog*>(window))
            answerFileDialog(*files);
        else if (auto* dialog = qobject_cast<QDialog*>(window))
            answerDialog(*dialog);
        else
            close(*window, false);
    }

    void answerMessageBox(QMessageBox& box) {
        const QList<QAbstractButton*> buttons = box.buttons();
        const int i = m_choices.below(static_cast<int>(buttons.size()) + 1);
        note("message \"" + box.text().left(60) + "\"", i < buttons.size() ? buttons[i]->text() : "Escape");
        if (i < buttons.size())
            buttons[i]->click();
        else
            QTest::keyClick(&box, Qt::Key_Escape);
    }

    void answerMenu(QMenu& menu) {
        QList<QAction*> items;
        for (QAction* a : menu.actions())
            if (a->isVisible() && a->isEnabled() && !a->isSeparator()) items << a;
        const int i = m_choices.below(static_cast<int>(items.size()) + 1);
        note("popup", i < items.size() ? items[i]->text() : "Escape");
        if (i < items.size()) menu.setActiveAction(items[i]);
        QTest::keyClick(&menu, i < items.size() ? Qt::Key_Return : Qt::Key_Escape);
    }

    void answerFileDialog(QFileDialog& dialog) {
        const bool save = dialog.acceptMode() == QFileDialog::AcceptSave;
        const auto& paths = save ? m_range.saveChoices : m_range.openChoices;
        const auto i = static_cast<std::size_t>(m_choices.below(static_cast<int>(paths.size()) + 1));
        note(save ? "save dialog" : "open dialog",
             i < paths.size() ? QFileInfo(paths[i]).fileName() : "Cancel");
        if (i == paths.size()) return dialog.reject();
        // Typed in full into the name box: selectFile() leaves the box empty for a file not yet listed.
        // Typing drops a file picked in the list before, but only with the focus in the box, which does
        // not come back to the dialog offscreen after a message box on top of it.
        for (auto* view : dialog.findChildren<QAbstractItemView*>())
            if (view->objectName() == "listView" || view->objectName() == "treeView") view->clearSelection();
        dialog.findChild<QLineEdit*>("fileNameEdit")->setText(paths[i]);
        // The Open or Save button, which checks the name as it does for the operator.
        static_cast<QDialog&>(dialog).accept();
        if (save && dialog.result() == QDialog::Accepted && onSaveAccepted)
            onSaveAccepted(dialog.selectedFiles().value(0));
    }

    // Mostly works a control: types into a box, or presses a button (+, -, an option, OK or Cancel).
    void answerDialog(QDialog& dialog) {
        QList<QWidget*> controls;
        for (QWidget* w : dialog.findChildren<QWidget*>())
            if (w->isVisible() && w->isEnabled() &&
                (qobject_cast<QAbstractButton*>(w) || qobject_cast<QLineEdit*>(w)))
                controls << w;
        const QString title = dialog.windowTitle();
        const int choice = m_choices.below(4);
        if (choice == 3) return close(dialog, false);
        if (choice > 0 && !controls.isEmpty()) {
            QWidget* control = controls[m_choices.below(static_cast<int>(controls.size()))];
            if (auto* button = qobject_cast<QAbstractButton*>(control)) {
                note(title, "presses " + button->objectName());
                return button->click();
            }
            auto* edit = static_cast<QLineEdit*>(control);
            const QString text = m_choices.oneOf(kTexts);
            note(title, "types \"" + text + "\" into " + edit->objectName());
            edit->setFocus();
            edit->selectAll();
            QTest::keyClick(edit, Qt::Key_Backspace);
            return QTest::keyClicks(edit, text);
        }
        QPushButton* ok = dialog.findChild<QPushButton*>("OKButton");
        if (!ok) ok = dialog.findChild<QPushButton*>("cmdOK");
        note(title, ok ? "OK" : "closes");
        if (ok)
            ok->click();
        else
            dialog.reject();
    }

    // As the operator would, with Cancel or Escape; a window that ignores both is made to go.
    void close(QWidget& window, bool byForce) {
        note(window.windowTitle(), byForce ? "closed by force" : "Cancel");
        auto* dialog = qobject_cast<QDialog*>(&window);
        auto* cancel = window.findChild<QPushButton*>("CancelButton");
        if (byForce && dialog)
            dialog->done(QDialog::Rejected);
        else if (byForce)
            window.hide();
        else if (cancel && cancel->isVisible())
            cancel->click();
        else
            QTest::keyClick(&window, Qt::Key_Escape);
    }

    Choices& m_choices;
    const ScratchRange& m_range;
    QWidget& m_mainWindow;
    std::vector<std::string>& m_trace;
    std::vector<std::string> m_findings;
    QTimer m_timer;
    QElapsedTimer m_eventClock;
    QPointer<QWidget> m_current;
    std::vector<std::pair<QPointer<QWidget>, int>> m_actionCounts;
    int m_ticks = 0;
    int m_answered = 0;
    bool m_queued = false;
};

}  // namespace

struct OperatorScript::Run {
    Run(ScratchRange& range, std::string bytes) : choices(std::move(bytes)) {
        const int targets = choices.oneOf(std::vector<int>{1, 2, 3, 4, 4, 8, 12, 40});
        // The groups are always set up: the Setup dialog can switch to groups but cannot make them.
        const int groupChoice = choices.below(6);
        const bool useGroups = groupChoice >= 4;
        const int groups = 1 + groupChoice % 3;
        const bool leftClick = choices.below(2) == 1;
        const int port = 1 + choices.below(ScratchRange::kPorts);
        trace.push_back("settings: " + std::to_string(targets) + " targets, " + std::to_string(groups) +
                        (useGroups ? " groups (used), " : " groups, ") + (leftClick ? "left" : "right") +
                        "-click, Com Port " + std::to_string(port) + " (" + ScratchRange::faultName(port) +
                        ")");
        g_trace = &trace;

        // Put together as the console's main() does.
        readStartup(range.prepareRun(targets, groups, useGroups, leftClick, port), state);
        form = std::make_unique<Form1>(state, op, positions);
        links = std::make_unique<app::ConsoleLinks>(state, op);
        form->attachLinks(&links->comPort(), &links->wifi(), &app::ConsoleLinks::newWindowPort);
        window = std::make_unique<app::MainWindowView>(*form);
        op.setParentWindow(window.get());
        op.setBeforePopup([this] { window->refresh(); });
        auto* app = app::GuardedApplication::instance();
        app->setReporter([this](const std::string& text, bool) { op.critical(text, kAppTitle); });
        app->setAfterFault([this] { window->refresh(); });
        internalSeen = app->internalErrors();
        window->show();
        if (!QTest::qWaitForWindowExposed(window.get()))
            throw std::runtime_error("the main window never showed");
        answerer = std::make_unique<DialogAnswerer>(choices, range, *window, trace);
        answerer->onSaveAccepted = [this](const QString& path) { snapshotSave(path.toStdString()); };
    }

    ~Run() {
        auto* app = app::GuardedApplication::instance();
        app->setReporter({});
        app->setAfterFault({});
        const bool closed = !window->isVisible();
        answerer.reset();
        window.reset();
        links.reset();
        form.reset();
        g_trace = nullptr;
        // Closing the main window ended the application's event loop, and a loop ended so refuses to
        // run again until the application's own loop has started once more.
        if (closed) {
            QTimer::singleShot(0, app, [] { QCoreApplication::exit(0); });
            QCoreApplication::exec();
        }
    }

    // Mostly near the top, sometimes at the far end, so that the table has to scroll.
    int pickIndex(int count) {
        return choices.below(8) == 0 ? count - 1 : choices.below(std::min(count, 40));
    }

    std::string perform() {
        const int roll = choices.below(100);
        if (roll < 46) return clickTable(roll < 32 ? 0 : roll < 40 ? 1 : roll < 44 ? 2 : 3);
        if (roll < 58) {
            const auto& [key, name] = choices.oneOf(kKeys);
            if (!window->table()->isVisible()) return {};
            trace.push_back(std::string("key ") + name);
            window->table()->setFocus();
            QTest::keyClick(window->table(), key);
            return trace.back();
        }
        if (roll < 99) return runCommand(choices.oneOf(kCommands));
        // Leaving ends the run, so it comes rarely.
        if (choices.below(2) == 0) return runCommand("M_Exit");
        trace.push_back("close box");
        window->close();
        return trace.back();
    }

    std::string click(QWidget* target, QPoint at, const std::string& what) {
        const Click& c = choices.oneOf(kClicks);
        trace.push_back(std::string(c.name) + " click on " + what);
        QTest::mouseClick(target, c.button, c.keys, at);
        return trace.back();
    }

    // Part 0: a data cell; 1: the seconds column; 2: the heading row; 3: the corner.
    std::string clickTable(int part) {
        auto* table = window->table();
        const auto* model = table->gridModel();
        if (!table->isVisible() || model->rowCount() == 0 || model->columnCount() == 0) return {};
        if (part == 3) return click(table->findChild<QLabel*>("corner"), {4, 4}, "the corner");
        const int row = part == 2 ? 0 : pickIndex(model->rowCount());
        const int col = part == 1 ? 0 : pickIndex(model->columnCount());
        table->scrollTo(model->index(row, col));
        if (part == 0) {
            const QRect cell = table->visualRect(model->index(row, col));
            return click(table->viewport(), cell.center(), "cell " + cellName(row + 1, col + 1));
        }
        QHeaderView* header = part == 1 ? table->verticalHeader() : table->horizontalHeader();
        const int section = part == 1 ? row : col;
        const int along = header->sectionViewportPosition(section) + header->sectionSize(section) / 2;
        return click(header->viewport(),
                     part == 1 ? QPoint(header->width() / 2, along) : QPoint(along, header->height() / 2),
                     (part == 1 ? "second " : "heading ") + std::to_string(section + 1));
    }

    // As the operator reaches it: an item hidden, greyed out or in a hidden menu cannot be chosen.
    std::string runCommand(const std::string& name) {
        QAction* action = window->action(name);
        const std::string& parent = form->item(name).parent;
        if (!action->isEnabled() || !action->isVisible() ||
            (!parent.empty() && !window->action(parent)->isVisible()))
            return {};
        trace.push_back("menu " + name);
        command = name;
        action->trigger();
        return trace.back();
    }

    void snapshotSave(std::string path) {
        if (!std::filesystem::path(path).has_extension()) path += ".hvn";  // as the console completes it
        SavedProgram saved{path, fileIdentity(path), state, false, {}};
        const ProgramGrid* grid = form->grid();
        const int columns = programColumns(state);
        saved.complete = grid && state.NumSeconds >= 0 && columns >= 0 &&
                         state.NumSeconds + 1 <= grid->Rows() && columns + 1 <= grid->Cols();
        for (int r = 1; saved.complete && r <= state.NumSeconds; ++r)
            for (int c = 1; c <= columns; ++c) saved.cells.push_back(grid->TextMatrix(r, c));
        saves.push_back(std::move(saved));
    }

    // A Program that was saved reads back as it stood on the screen.
    void checkSaves(std::vector<std::string>& out) {
        for (const SavedProgram& saved : std::exchange(saves, {})) {
            const auto now = fileIdentity(saved.path);
            if (now.second == 0 || now == saved.before) continue;  // not written
            ++result.savesReadBack;
            const std::string name = "the Program saved as " + saved.path;
            SharedState back;
            back.FilePath = saved.path;
            std::unique_ptr<ProgramGrid> grid;
            const auto error = readProgramFile(back, standaloneHost(back, grid));
            const SharedState& was = saved.state;
            if (!saved.complete) {
                out.push_back(name + " was written from a grid without the cells of its setup");
            } else if (error) {
                out.push_back(name + " does not read back: " + error->message());
            } else if (back.NumTargets != was.NumTargets || back.UseGroups != was.UseGroups ||
                       back.NumSeconds != was.NumSeconds ||
                       (was.UseGroups && back.NumGroups != was.NumGroups) ||
                       (was.UseGroups &&
                        !std::equal(&was.GroupNum[1],
                                    &was.GroupNum[1] + std::clamp<int>(was.NumTargets, 0, 200),
                                    &back.GroupNum[1]))) {
                out.push_back(name + " reads back with another header or other groups");
            } else {
                const int columns = programColumns(was);
                for (int r = 1, i = 0; r <= was.NumSeconds; ++r)
                    for (int c = 1; c <= columns; ++c, ++i)
                        if (grid->TextMatrix(r, c) != saved.cells[static_cast<std::size_t>(i)])
                            return out.push_back(name + " reads back \"" + grid->TextMatrix(r, c) +
                                                 "\" in cell " + cellName(r, c) + ", not \"" +
                                                 saved.cells[static_cast<std::size_t>(i)] + "\"");
            }
        }
    }

    // The grid holds a row for each second of the Program and two more: the heading row and second 0.
    // A download gives back the row it added last, and a Program with no delay at all has none to give:
    // it comes as second 0 alone, with one row to spare. The columns follow the setup when a Program is
    // made, opened, lengthened or downloaded (a download adds columns for targets the transmitter's
    // Program names beyond the setup), unless the command was cancelled. The Setup dialog changes the
    // setup but leaves the Program on the screen as it is, and no other command changes the grid's shape.
    void checkShape(std::vector<std::string>& out, const ProgramGrid& grid, bool remade) {
        const bool reshaping =
            command == "M_New" || command == "M_Open" || command == "M_Time" || command == "M_Download";
        if (command == "M_Download" && remade) downloaded = true;
        const std::string size = std::to_string(grid.Rows()) + " x " + std::to_string(grid.Cols());
        if (grid.Rows() == state.NumSeconds + 2)
            downloaded = false;
        else if (!downloaded || state.NumSeconds != 0 || grid.Rows() != 3)
            out.push_back("the grid has " + size + " cells for " + std::to_string(state.NumSeconds) +
                          " seconds");
        const bool unchanged = shape.shown && grid.Rows() == shape.rows && grid.Cols() == shape.cols;
        const int columns = programColumns(state);
        if (reshaping) {
            const bool fits =
                command == "M_Download" ? grid.Cols() - 1 >= columns : grid.Cols() - 1 == columns;
            if (!fits && !unchanged)
                out.push_back(command + " left " + size + " cells for a setup of " + std::to_string(columns) +
                              " columns");
        } else if (shape.shown && !unchanged) {
            out.push_back("the grid went from " + std::to_string(shape.rows) + " x " +
                          std::to_string(shape.cols) + " to " + size + " cells");
        }
    }

    std::vector<std::string> check() {
        std::vector<std::string> out;
        auto* app = app::GuardedApplication::instance();
        if (app->internalErrors() != internalSeen) {
            internalSeen = app->internalErrors();
            out.push_back("an exception that is no Fault left an event handler: " + app->lastText());
        }
        const ProgramGrid* grid = form->grid();
        auto* table = window->table();
        if (table->gridModel()->grid() != grid)
            out.push_back("the table shows a grid the window no longer holds");
        const int rows = grid ? grid->Rows() - 1 : 0;
        const int cols = grid ? grid->Cols() - 1 : 0;
        if (table->verticalHeader()->count() != rows || table->horizontalHeader()->count() != cols)
            out.push_back("the table has " + std::to_string(table->verticalHeader()->count()) + " x " +
                          std::to_string(table->horizontalHeader()->count()) + " cells, the grid " +
                          std::to_string(rows) + " x " + std::to_string(cols));
        // A Program whose file failed before the grid took its shape is held but not shown.
        const bool shown = grid && grid->Visible;
        if (table->isVisibleTo(window.get()) != shown)
            out.push_back(shown ? "the Program is not on the screen" : "the table is up with no Program");
        for (int c = 1; grid && c <= SharedState::kMaxTargets; ++c)
            if (const int row = state.SelRow[static_cast<std::size_t>(c)]; row >= grid->Rows()) {
                out.push_back("SelRow(" + std::to_string(c) + ") = " + std::to_string(row) +
                              " is past the grid's last row " + std::to_string(grid->Rows() - 1));
                break;
            }
        if (shown) {
            ++result.programsShown;
            checkShape(out, *grid, form->gridGeneration() != generation);
        }
        shape = shown ? Shape{true, grid->Rows(), grid->Cols()} : Shape{};
        generation = form->gridGeneration();
        checkSaves(out);
        return out;
    }

    Choices choices;
    std::vector<std::string> trace;
    SharedState state;
    app::QtOperator op;
    testing::MemoryPositionStore positions;
    std::unique_ptr<Form1> form;
    std::unique_ptr<app::ConsoleLinks> links;
    std::unique_ptr<app::MainWindowView> window;
    std::unique_ptr<DialogAnswerer> answerer;
    std::vector<SavedProgram> saves;
    std::string command;      // of the event under way, if it is one
    unsigned generation = 0;  // of the grid, before the event
    bool downloaded = false;  // the grid on the screen came from the transmitter
    struct Shape {
        bool shown = false;
        int rows = 0, cols = 0;
    } shape;
    int internalSeen = 0;
    RunResult result;
};

OperatorScript::OperatorScript(ScratchRange& range, std::string bytes)
    : m_run(std::make_unique<Run>(range, std::move(bytes))) {}

OperatorScript::~OperatorScript() = default;

Form1& OperatorScript::form() {
    return *m_run->form;
}

std::vector<std::string> OperatorScript::check() {
    return m_run->check();
}

RunResult OperatorScript::run(int maxEvents) {
    Run& r = *m_run;
    r.check();
    while (r.result.events < maxEvents && !r.choices.exhausted() && r.window->isVisible()) {
        r.answerer->beginEvent();
        r.command.clear();
        if (r.perform().empty()) continue;
        // What the event left behind runs: queued refreshes, the message of a fault caught.
        for (int i = 0; i < 3; ++i) QTest::qWait(2);
        r.window->grab();
        ++r.result.events;
        r.result.findings = r.check();
        for (auto& finding : r.answerer->takeFindings()) r.result.findings.push_back(finding);
        if (!r.result.findings.empty()) break;
    }
    r.result.trace = r.trace;
    r.result.answers = r.answerer->answered();
    return r.result;
}

void printTraceOnDeath() {
    if (!__sanitizer_set_death_callback) return;
    __sanitizer_set_death_callback([] {
        if (!g_trace) return;
        std::fputs("Operator script up to the failure:\n", stderr);
        for (const auto& line : *g_trace) std::fprintf(stderr, "  %s\n", line.c_str());
    });
}

}  // namespace halvane::monkey
