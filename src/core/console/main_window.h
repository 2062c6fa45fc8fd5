#pragma once
// Form1, the main window: its menus and their rules, the Program grid it holds, and the File commands.

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "authoring/operator.h"
#include "authoring/program_grid.h"
#include "authoring/shared_state.h"
#include "authoring/window_position.h"
#include "console/menu_item.h"
#include "links/serial_port.h"

namespace halvane {

class ComPortModule;
class FrmHitScores;
class frmRadioSetup;
class ScorePrinter;
class WifiLink;
class WorkbookWriter;

// Where the window finds the operator's manual: the first of these files that exists is opened.
struct ManualLocations {
    std::vector<std::string> candidates;
};

class Form1 {
  public:
    Form1(SharedState& state, Operator& op, PositionStore& positions, ManualLocations manuals = {});

    // What the process does after a command.
    enum class Ending { None, Unload, Now };

    // Events of the window.
    void Load();
    void Resize(double widthTwips, double heightTwips);
    // Runs before the window closes; false keeps it open (only when the operator cancels a save).
    bool QueryUnload();
    void Unload();

    // Menu commands by item name ("M_New"); items whose windows do not exist yet do nothing.
    void run(std::string_view item);
    void M_New();
    void M_Open();
    void M_Close();
    void M_Save();
    void M_Save_As();
    void M_Exit();
    void M_Time();
    void M_Manual();
    void M_About();
    void M_TargetSetup();
    void M_Ethernet();
    void M_Send();
    void M_Download();
    void M_Run();
    void M_LiveMode();
    void M_LM_SETUP();
    void M_HitScores();
    void M_ComPort();
    void M_RadioSetup();

    // The device links the window reaches: the shared serial line and the Wi-Fi link. The run and
    // live windows open serial ports of their own, which the platform makes.
    using PortFactory = std::function<std::unique_ptr<SerialPort>()>;
    void attachLinks(ComPortModule* comPort, WifiLink* wifi, PortFactory newPort = {}) {
        m_comPort = comPort;
        m_wifi = wifi;
        m_newPort = std::move(newPort);
    }
    // Where the hit score window saves workbooks and prints score sheets.
    void attachScoreOutput(WorkbookWriter* workbooks, ScorePrinter* printer) {
        m_workbooks = workbooks;
        m_printer = printer;
    }
    ~Form1();

    // The grid's events and the popup's commands. Buttons: 1 left, 2 right, 4 middle; shift: 1 Shift,
    // 2 Ctrl, 4 Alt. The mouse row and column are the grid cell under the pointer.
    void grdInfo_MouseDown(int button, int shift, int mouseRow, int mouseCol);
    // Every key on the grid. The arrow, Page, Home and End keys move the current cell, as the control
    // itself does (`pageRows` rows a page); Delete (46) clears.
    void grdInfo_KeyDown(int keyCode, int shift, int pageRows = 1);
    void M_Face();
    void M_Pause();
    void ClearSelection();

    // The visibility rules of the menu; `afterSetup` selects the variant run after the Setup dialog.
    void applyVisibility(bool afterSetup);

    // What the view shows.
    const std::string& Caption() const { return m_caption; }
    const std::vector<MenuItem>& menu() const { return m_menu; }
    const MenuItem& item(std::string_view name) const;
    ProgramGrid* grid() { return m_grid.get(); }
    const ProgramGrid* grid() const { return m_grid.get(); }
    WindowPlacement& placement() { return m_placement; }
    int MousePointer() const { return m_mousePointer; }
    Ending ending() const { return m_ending; }
    // Counts every replacement or change of shape of the grid, so a view knows when to read it again.
    unsigned gridGeneration() const { return m_gridGeneration; }
    // Told at once whenever the grid is replaced, removed or changes its shape, before anything else
    // can run: a view drops what it holds of the old grid there.
    void setGridObserver(std::function<void()> observer) { m_gridObserver = std::move(observer); }

    // Public members other windows use.
    bool ClickedBefore = false;
    std::int16_t ProgramNumber = 0;
    std::string Tag;

    // Shared with the editing and setup windows.
    enum class SaveOutcome { Saved, Cancelled, Failed };
    // The Save dialog of the save questions (all files, FilterIndex 2), then SaveProgram.
    SaveOutcome saveFromPrompt();
    void destroyGrid();
    // The grid changed its shape: highlights past its end go, and the views are told.
    void gridReshaped();
    // Reads `file` into a new grid. Only a load that succeeds replaces the Program: a failed one leaves
    // the grid, the settings, the file name and the title as they were, and tells why.
    bool LoadProgram(const ChosenFile& file);
    bool SaveProgram();
    void ClearSelectionRows();
    void setProgramMenusEnabled(bool enabled);
    // True, with the operator told, when the hit score window is using the shared port, which `what`
    // (an operation that takes the port over) would close under it.
    bool sharedPortBusy(const std::string& what);
    SharedState& state() { return m_state; }
    // A message box or a question with the application's title.
    void tell(const std::string& text) { m_operator.tell(text, "Halvane"); }
    Answer ask(const std::string& text, Buttons buttons) { return m_operator.ask(text, "Halvane", buttons); }

    static constexpr int kGridHeightMargin = 780;
    static constexpr int kGridWidthMargin = 110;

  private:
    MenuItem& menuItem(std::string_view name);
    // The items under a popup menu of the table, as the operator's popup takes them.
    std::vector<PopupItem> popupItems(std::string_view menu) const;
    Answer askSaveChanges();
    SaveOutcome saveWithDialog(bool alwaysAsk);
    void NewProgram();
    void showProgramSetup();
    ProgramGrid& createGrid();
    void installGrid(std::unique_ptr<ProgramGrid> grid);
    std::optional<ChosenFile> chooseProgramFile(const FileDialogSetup& setup);
    void plainClick();
    void ctrlClick();
    void faceTimeThenClear();
    void restoreHighlight(int col);
    void guarded(void (Form1::*command)());
    void fitGrid();

    SharedState& m_state;
    Operator& m_operator;
    ComPortModule* m_comPort = nullptr;
    WifiLink* m_wifi = nullptr;
    PortFactory m_newPort;
    PositionStore& m_positions;
    ManualLocations m_manuals;
    std::vector<MenuItem> m_menu;
    std::unique_ptr<ProgramGrid> m_grid;
    // The hit score window lives from its first opening to the end of the program, as the scores do.
    std::unique_ptr<FrmHitScores> m_hitScores;
    // So does the radio setup window, which keeps the serial number of the last target it split.
    std::unique_ptr<frmRadioSetup> m_radioSetup;
    WorkbookWriter* m_workbooks = nullptr;
    ScorePrinter* m_printer = nullptr;
    WindowPlacement m_placement;
    std::string m_caption;
    int m_mousePointer = 0;
    Ending m_ending = Ending::None;
    unsigned m_gridGeneration = 0;
    std::function<void()> m_gridObserver;
};

}  // namespace halvane
