#pragma once
// The view of Form1: the menu bar built from the model, and the Program table.

#include <QMainWindow>
#include <map>
#include <string>

class QAction;
class QMenu;

namespace halvane {
class Form1;
}

namespace halvane::app {

class ProgramTableView;

class MainWindowView : public QMainWindow {
    Q_OBJECT
  public:
    explicit MainWindowView(Form1& model, QWidget* parent = nullptr);
    ~MainWindowView() override;

    // Shows the model's state: caption, menu states, the grid and its place.
    void refresh();
    void runCommand(const std::string& item);
    QAction* action(const std::string& item) const;
    ProgramTableView* table() const { return m_table; }

  protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void buildMenu();
    void placeGrid();
    void applyPlacement();
    void storeGeometry();

    Form1& m_model;
    ProgramTableView* m_table;
    std::map<std::string, QAction*> m_actions;
    unsigned m_shownGeneration = ~0u;
    bool m_closing = false;
};

}  // namespace halvane::app
