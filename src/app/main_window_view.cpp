#include "main_window_view.h"

#include <QAction>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QCursor>
#include <QIcon>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>

#include "console/main_window.h"
#include "grid_table_model.h"
#include "platform/guarded_application.h"
#include "platform/twips.h"
#include "program_table_view.h"

// The pictures are linked in from a static library: register them before the first use.
static void initResources() {
    Q_INIT_RESOURCE(halvane);
}

namespace halvane::app {

MainWindowView::MainWindowView(Form1& model, QWidget* parent) : QMainWindow(parent), m_model(model) {
    initResources();
    setObjectName("Form1");
    setWindowIcon(QIcon(":/halvane.svg"));
    auto* central = new QWidget(this);
    setCentralWidget(central);
    m_table = new ProgramTableView(central);
    m_table->hide();
    connect(m_table, &ProgramTableView::gridMouseDown, this, [this](int button, int shift, int row, int col) {
        GuardedApplication::handle([&] { m_model.grdInfo_MouseDown(button, shift, row, col); });
        refresh();
    });
    connect(m_table, &ProgramTableView::gridKeyDown, this, [this](int keyCode, int shift) {
        GuardedApplication::handle([&] { m_model.grdInfo_KeyDown(keyCode, shift, m_table->pageRows()); });
        refresh();
    });
    // A grid that goes away is let go of at once: a dialog's event loop may repaint the table before
    // the command that replaced it returns.
    m_model.setGridObserver([this] { refresh(); });
    buildMenu();
    m_model.Load();
    applyPlacement();
    refresh();
}

MainWindowView::~MainWindowView() {
    m_model.setGridObserver({});
}

void MainWindowView::buildMenu() {
    std::map<std::string, QMenu*> menus;
    for (const MenuItem& item : m_model.menu()) {
        const bool hasChildren = std::any_of(m_model.menu().begin(), m_model.menu().end(),
                                             [&](const MenuItem& i) { return i.parent == item.name; });
        const QString caption = QString::fromStdString(item.caption);
        QAction* action = nullptr;
        if (item.parent.empty() && hasChildren) {
            QMenu* menu = item.name == "Popup_Menu" ? new QMenu(caption, this) : menuBar()->addMenu(caption);
            menu->setObjectName(QString::fromStdString(item.name));
            menus[item.name] = menu;
            action = menu->menuAction();
        } else {
            QMenu* parentMenu = item.parent.empty() ? nullptr : menus.at(item.parent);
            if (item.caption == "-") {
                action = parentMenu->addSeparator();
            } else {
                action = parentMenu ? parentMenu->addAction(caption) : menuBar()->addAction(caption);
                if (!item.shortcut.empty())
                    action->setShortcut(QKeySequence(QString::fromStdString(item.shortcut)));
                // The popup's items are run by the model once the popup has closed.
                const std::string name = item.name;
                if (item.parent != "Popup_Menu")
                    connect(action, &QAction::triggered, this, [this, name] { runCommand(name); });
            }
        }
        action->setObjectName(QString::fromStdString(item.name));
        m_actions[item.name] = action;
    }
}

QAction* MainWindowView::action(const std::string& item) const {
    auto it = m_actions.find(item);
    return it == m_actions.end() ? nullptr : it->second;
}

void MainWindowView::runCommand(const std::string& item) {
    GuardedApplication::handle([&] { m_model.run(item); });
    refresh();
    switch (m_model.ending()) {
        case Form1::Ending::Unload:
            close();
            break;
        case Form1::Ending::Now:
            // Ends at once, past the closing events.
            m_closing = true;
            hide();
            QCoreApplication::exit(0);
            break;
        case Form1::Ending::None:
            break;
    }
}

void MainWindowView::refresh() {
    setWindowTitle(QString::fromStdString(m_model.Caption()));
    for (const MenuItem& item : m_model.menu()) {
        QAction* a = m_actions.at(item.name);
        a->setEnabled(item.enabled);
        a->setVisible(item.visible);
    }
    if (m_model.gridGeneration() != m_shownGeneration) {
        m_shownGeneration = m_model.gridGeneration();
        m_table->gridModel()->setGrid(m_model.grid());
    } else {
        m_table->gridModel()->cellsChanged();
    }
    m_table->reload();
    placeGrid();
}

void MainWindowView::placeGrid() {
    const ProgramGrid* grid = m_model.grid();
    if (!grid || !grid->Visible) {
        m_table->hide();
        return;
    }
    m_table->setGeometry(0, 0, toPixels(grid->Width), toPixels(grid->Height));
    if (!m_table->isVisible()) {
        m_table->show();
        m_table->setFocus();  // the keys move the grid's current cell from the start
    }
}

void MainWindowView::applyPlacement() {
    const WindowPlacement& p = m_model.placement();
    const QSize extra = frameGeometry().size() - geometry().size();
    move(toPixels(p.Left), toPixels(p.Top));
    resize(toPixels(p.Width) - extra.width(), toPixels(p.Height) - extra.height());
}

void MainWindowView::storeGeometry() {
    const QRect frame = frameGeometry();
    m_model.placement().Left = toTwips(frame.x());
    m_model.placement().Top = toTwips(frame.y());
    m_model.Resize(toTwips(frame.width()), toTwips(frame.height()));
}

void MainWindowView::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    if (isMinimized()) return;
    storeGeometry();
    placeGrid();
}

void MainWindowView::moveEvent(QMoveEvent* event) {
    QMainWindow::moveEvent(event);
    if (!isMinimized() && !isMaximized()) {
        m_model.placement().Left = toTwips(frameGeometry().x());
        m_model.placement().Top = toTwips(frameGeometry().y());
    }
}

void MainWindowView::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange)
        m_model.placement().WindowState = isMinimized() ? 1 : isMaximized() ? 2 : 0;
}

void MainWindowView::closeEvent(QCloseEvent* event) {
    if (m_closing) {
        event->accept();
        return;
    }
    if (!m_model.QueryUnload()) {
        refresh();
        event->ignore();
        return;
    }
    m_model.Unload();
    m_closing = true;
    event->accept();
    // Closing the main window ends the program, whatever other window is open.
    QCoreApplication::exit(0);
}

}  // namespace halvane::app
