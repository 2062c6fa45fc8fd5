#include "console/main_window.h"
#include "scores/hit_scores.h"

#include <filesystem>
#include <stdexcept>
#include <utility>

#include "authoring/about_box.h"
#include "authoring/grid_setup.h"
#include "authoring/program_file.h"
#include "authoring/program_setup.h"
#include "console/setup_dialog.h"
#include "links/ethernet_setup.h"
#include "links/radio_setup.h"
#include "links/wifi_link.h"
#include "range/range_display.h"
#include "text/fault.h"

namespace halvane {

namespace {

std::vector<MenuItem> designMenu() {
    return {
        {"M_File", "", "&File", "", true, true},
        {"M_New", "M_File", "&New", "Ctrl+N", true, true},
        {"M_Open", "M_File", "&Open", "Ctrl+O", true, true},
        {"M_Close", "M_File", "&Close", "", true, true},
        {"bar1", "M_File", "-", "", true, true},
        {"M_Save_As", "M_File", "Save &As", "", true, true},
        {"M_Save", "M_File", "&Save", "Ctrl+S", true, true},
        {"bar2", "M_File", "-", "", true, true},
        {"M_Exit", "M_File", "&Exit", "", true, true},
        {"M_Time", "", "&Add Time", "", false, true},
        {"M_LiveMode", "", "&Live Mode", "", true, true},
        {"M_Run", "", "&Run", "", false, true},
        {"M_Target", "", "&Transmitter", "", true, true},
        {"M_Send", "M_Target", "Send", "", false, true},
        {"M_Download", "M_Target", "Download", "", true, true},
        {"M_HitScores", "", "&Hit Scores", "", true, true},
        {"M_Config", "", "&Config", "", true, true},
        {"M_LM_SETUP", "M_Config", "LM Setup", "", true, true},
        {"M_TargetSetup", "M_Config", "Setup", "", true, true},
        {"M_ComPort", "M_Config", "Com Port", "", true, true},
        {"M_Ethernet", "M_Config", "Wi-Fi Setup", "", true, true},
        {"M_RadioSetup", "M_Config", "Radio Setup", "", true, true},
        {"M_Help", "", "&Help", "", true, true},
        {"M_Manual", "M_Help", "&Manual", "", true, true},
        {"M_About", "M_Help", "&About", "", true, true},
        {"Popup_Menu", "", "Popup", "", true, false},
        {"M_Face", "Popup_Menu", "Face Time", "", true, true},
        {"M_Pause", "Popup_Menu", "Insert Pause", "", true, true},
    };
}

constexpr const char* kSavePrompt = "File is Changed do you want to save?";
constexpr const char* kProgramFilter = "Halvane(*.hvn)|*.hvn";
constexpr const char* kPromptFilter = "All Files (*.*)|*.*|Halvane(*.hvn)|*.hvn";
constexpr const char* kLoadedCaption = "LM47 Programer - ";

}  // namespace

Form1::Form1(SharedState& state, Operator& op, PositionStore& positions, ManualLocations manuals)
    : m_state(state),
      m_operator(op),
      m_positions(positions),
      m_manuals(std::move(manuals)),
      m_menu(designMenu()),
      m_caption(kAppTitle) {
    m_placement.Left = 1200;
    m_placement.Top = 900;
    m_placement.Width = 15000;
    m_placement.Height = 10500;
}

MenuItem& Form1::menuItem(std::string_view name) {
    for (auto& item : m_menu)
        if (item.name == name) return item;
    throw std::logic_error("no menu item " + std::string(name));
}

const MenuItem& Form1::item(std::string_view name) const {
    return const_cast<Form1*>(this)->menuItem(name);
}

void Form1::Load() {
    Tag = "Main Form";
    m_placement.Tag = Tag;
    RestoreWindowPos(m_placement, m_positions);
    m_state.GridLoaded = false;
    m_state.NumSeconds = 30;
    m_state.FilePath.clear();
    applyVisibility(false);
}

void Form1::applyVisibility(bool afterSetup) {
    const SharedState& s = m_state;
    auto& live = menuItem("M_LiveMode");
    live.visible = s.RadioUSB || s.TypeNXBox || s.TypeVMR4000 || s.RadioWiFi;
    if (!s.RadioUSB && !s.RadioWiFi) live.visible = true;
    if (afterSetup) {
        menuItem("M_Target").visible = s.RadioLMC;
        menuItem("M_HitScores").visible = s.RadioLMC;
        menuItem("M_HitScores").visible = s.TypeLMSeries;
        menuItem("M_Ethernet").visible = s.RadioWiFi;
        if (s.RadioWiFi) menuItem("M_Ethernet").enabled = true;
    } else {
        menuItem("M_Target").visible = s.RadioLMC;
        menuItem("M_HitScores").visible = s.TypeLMSeries;
        menuItem("M_Ethernet").visible = s.RadioWiFi;
        menuItem("M_Ethernet").enabled = s.RadioWiFi;
    }
    menuItem("M_LM_SETUP").visible = s.TypeLMSeries && (s.RadioUSB || s.RadioWiFi);
    menuItem("M_ComPort").visible = s.RadioUSB || s.RadioLMC;
}

void Form1::Resize(double widthTwips, double heightTwips) {
    m_placement.Width = widthTwips;
    m_placement.Height = heightTwips;
    if (heightTwips > kGridHeightMargin && widthTwips > kGridWidthMargin && m_state.GridLoaded && m_grid)
        fitGrid();
}

void Form1::fitGrid() {
    m_grid->Height = static_cast<int>(m_placement.Height) - kGridHeightMargin;
    m_grid->Width = static_cast<int>(m_placement.Width) - kGridWidthMargin;
}

bool Form1::QueryUnload() {
    // Closing the window never drops a changed Program without the question that Exit asks.
    if (m_state.FileChanged) {
        const Answer answer = askSaveChanges();
        if (answer == Answer::Cancel) return false;
        if (answer == Answer::Yes && saveFromPrompt() != SaveOutcome::Saved) return false;
    }
    Tag = "Main Form";
    m_placement.Tag = Tag;
    SaveWindowPos(m_placement, m_positions);
    return true;
}

void Form1::Unload() {
    if (m_wifi && m_wifi->state() == TcpSocket::Connected) m_wifi->EthernetDisconnect();
    m_ending = Ending::Now;
}

void Form1::run(std::string_view name) {
    using Command = void (Form1::*)();
    static constexpr std::pair<std::string_view, Command> kCommands[] = {
        {"M_New", &Form1::M_New},
        {"M_Open", &Form1::M_Open},
        {"M_Close", &Form1::M_Close},
        {"M_Save", &Form1::M_Save},
        {"M_Save_As", &Form1::M_Save_As},
        {"M_Exit", &Form1::M_Exit},
        {"M_Time", &Form1::M_Time},
        {"M_Manual", &Form1::M_Manual},
        {"M_About", &Form1::M_About},
        {"M_TargetSetup", &Form1::M_TargetSetup},
        {"M_Face", &Form1::M_Face},
        {"M_Pause", &Form1::M_Pause},
        {"M_Ethernet", &Form1::M_Ethernet},
        {"M_Send", &Form1::M_Send},
        {"M_Download", &Form1::M_Download},
        {"M_Run", &Form1::M_Run},
        {"M_LiveMode", &Form1::M_LiveMode},
        {"M_LM_SETUP", &Form1::M_LM_SETUP},
        {"M_HitScores", &Form1::M_HitScores},
        {"M_ComPort", &Form1::M_ComPort},
        {"M_RadioSetup", &Form1::M_RadioSetup},
    };
    for (const auto& [item, command] : kCommands)
        if (item == name) return guarded(command);
}

// A fault inside a command stops that command; the operator is told and everything else stays.
void Form1::guarded(void (Form1::*command)()) {
    try {
        (this->*command)();
    } catch (const Fault& fault) {
        m_operator.tell(fault.what(), kAppTitle);
        gridReshaped();
    }
}

void Form1::setProgramMenusEnabled(bool enabled) {
    menuItem("M_Run").enabled = enabled;
    menuItem("M_Send").enabled = enabled;
    menuItem("M_Time").enabled = enabled;
}

void Form1::ClearSelectionRows() {
    for (int n = 1; n <= SharedState::kMaxTargets; ++n) m_state.SelRow[static_cast<std::size_t>(n)] = 0;
}

ProgramGrid& Form1::createGrid() {
    installGrid(std::make_unique<ProgramGrid>());
    return *m_grid;
}

// The old grid lives until the views have let go of it.
void Form1::installGrid(std::unique_ptr<ProgramGrid> grid) {
    const std::unique_ptr<ProgramGrid> old = std::exchange(m_grid, std::move(grid));
    m_state.GridLoaded = m_grid != nullptr;
    if (m_grid) fitGrid();
    gridReshaped();
}

void Form1::destroyGrid() {
    installGrid(nullptr);
}

void Form1::gridReshaped() {
    const int rows = m_grid ? m_grid->Rows() : 0;
    const int cols = m_grid ? m_grid->Cols() : 0;
    for (int col = 1; col <= SharedState::kMaxTargets; ++col) {
        auto& sel = m_state.SelRow[static_cast<std::size_t>(col)];
        if (col >= cols || sel >= rows) sel = 0;
    }
    ++m_gridGeneration;
    if (m_gridObserver) m_gridObserver();
}

Answer Form1::askSaveChanges() {
    return m_operator.ask(kSavePrompt, kAppTitle, Buttons::YesNoCancel);
}

// A name typed without an extension gets the Programs' own, so that the Open dialog lists the file.
std::optional<ChosenFile> Form1::chooseProgramFile(const FileDialogSetup& setup) {
    auto chosen = m_operator.chooseSaveFile(setup);
    if (chosen && !std::filesystem::path(chosen->fileName).has_extension()) {
        chosen->fileName += ".hvn";
        chosen->fileTitle += ".hvn";
    }
    return chosen;
}

// Yes at the question of New, Close, Exit and the close box: always the dialog, FileTitle untouched.
Form1::SaveOutcome Form1::saveFromPrompt() {
    const auto chosen = chooseProgramFile({kPromptFilter, 2});
    if (!chosen) return SaveOutcome::Cancelled;
    m_state.FilePath = chosen->fileName;
    return SaveProgram() ? SaveOutcome::Saved : SaveOutcome::Failed;
}

Form1::SaveOutcome Form1::saveWithDialog(bool alwaysAsk) {
    if (!m_state.GridLoaded || !m_grid) {
        m_operator.tell("There is no Program to save.", kAppTitle);
        return SaveOutcome::Failed;
    }
    if (alwaysAsk || m_state.FilePath.empty()) {
        const auto chosen = chooseProgramFile({kProgramFilter, 1});
        if (!chosen) return SaveOutcome::Cancelled;
        m_state.FilePath = chosen->fileName;
        m_state.FileTitle = chosen->fileTitle;
    }
    return SaveProgram() ? SaveOutcome::Saved : SaveOutcome::Failed;
}

bool Form1::SaveProgram() {
    if (!m_state.GridLoaded || !m_grid) {
        m_operator.tell("There is no Program to save.", kAppTitle);
        return false;
    }
    m_mousePointer = 13;
    m_operator.setBusy(true);
    const auto error = writeProgramFile(m_state, *m_grid);
    m_mousePointer = 0;
    m_operator.setBusy(false);
    if (error) {
        m_operator.tell(error->message(), kAppTitle);
        return false;
    }
    m_state.FileChanged = false;
    m_caption = kLoadedCaption + m_state.FileTitle;
    return true;
}

bool Form1::LoadProgram(const ChosenFile& file) {
    SharedState loaded = m_state;
    loaded.FilePath = file.fileName;
    std::unique_ptr<ProgramGrid> grid;
    ProgramLoadHost host = standaloneHost(loaded, grid);
    m_mousePointer = 13;
    m_operator.setBusy(true);
    const auto error = readProgramFile(loaded, host);
    m_mousePointer = 0;
    m_operator.setBusy(false);
    if (error) {
        m_operator.tell(error->message(), kAppTitle);
        return false;
    }
    loaded.FileTitle = file.fileTitle;
    loaded.FileChanged = false;
    m_state = loaded;
    installGrid(std::move(grid));
    setProgramMenusEnabled(true);
    m_caption = kLoadedCaption + m_state.FileTitle;
    return true;
}

void Form1::M_New() {
    if (m_state.FileChanged) {
        const Answer answer = askSaveChanges();
        if (answer == Answer::Cancel) return;
        if (answer == Answer::Yes && saveFromPrompt() != SaveOutcome::Saved) return;
    }
    NewProgram();
}

void Form1::NewProgram() {
    m_caption = "LM47 Programer ";
    m_state.FileChanged = false;
    if (m_state.GridLoaded) destroyGrid();
    ClearSelectionRows();
    m_state.FilePath.clear();
    showProgramSetup();
}

void Form1::M_Time() {
    showProgramSetup();
}

void Form1::showProgramSetup() {
    Settings dialog(m_state.NumSeconds, m_operator);
    m_operator.show(dialog);
    const auto seconds = dialog.result();
    if (!seconds) return;
    const bool created = !m_state.GridLoaded || !m_grid;
    const int rowsBefore = created ? 0 : m_grid->Rows();
    m_state.NumSeconds = *seconds;
    if (created) createGrid();
    fitGrid();
    try {
        SetupGrid(*m_grid, m_state);
    } catch (const Fault& fault) {
        m_operator.tell(fault.what(), kAppTitle);
        if (created) destroyGrid();
        return;
    }
    m_grid->Visible = true;
    // A new length changes the Program as any edit does: Close and Exit ask before it is lost.
    if (!created && m_grid->Rows() != rowsBefore) m_state.FileChanged = true;
    gridReshaped();
    setProgramMenusEnabled(true);
}

void Form1::M_Open() {
    if (m_state.FileChanged) {
        const Answer answer = askSaveChanges();
        if (answer == Answer::Cancel) return;
        // A Save cancelled in its dialog lets Open go on; one that failed keeps the Program here.
        if (answer == Answer::Yes && saveWithDialog(false) == SaveOutcome::Failed) return;
    }
    const auto chosen = m_operator.chooseOpenFile({kProgramFilter, 1});
    if (!chosen) return;
    LoadProgram(*chosen);
}

void Form1::M_Save() {
    saveWithDialog(false);
}

void Form1::M_Save_As() {
    saveWithDialog(true);
}

void Form1::M_Close() {
    if (!m_state.FileChanged) {
        if (!m_state.GridLoaded) return;
        setProgramMenusEnabled(false);
        destroyGrid();
    } else {
        const Answer answer = askSaveChanges();
        if (answer == Answer::Cancel) return;
        if (answer == Answer::No) {
            if (!m_state.GridLoaded) return;
            destroyGrid();
            setProgramMenusEnabled(false);
            m_state.FileChanged = false;
            return;
        }
        if (saveFromPrompt() != SaveOutcome::Saved) return;
        setProgramMenusEnabled(false);
        destroyGrid();
    }
    m_state.FileChanged = false;
    m_state.NumSeconds = 30;
    m_state.FilePath.clear();
}

void Form1::M_Exit() {
    if (!m_state.FileChanged) {
        m_ending = Ending::Unload;
        return;
    }
    const Answer answer = askSaveChanges();
    if (answer == Answer::Cancel) return;
    if (answer == Answer::Yes && saveFromPrompt() != SaveOutcome::Saved) return;
    // Ends at once: the window position is not stored on this path.
    m_ending = Ending::Now;
}

void Form1::M_Manual() {
    std::error_code ec;
    for (const auto& candidate : m_manuals.candidates)
        if (std::filesystem::is_regular_file(candidate, ec)) {
            m_operator.openDocument(candidate);
            return;
        }
}

std::vector<PopupItem> Form1::popupItems(std::string_view menu) const {
    std::vector<PopupItem> items;
    for (const MenuItem& item : m_menu)
        if (item.parent == menu) items.push_back({item.name, item.caption, item.enabled, item.visible});
    return items;
}

void Form1::M_TargetSetup() {
    frmDisplay dialog(*this);
    m_operator.show(dialog);
    // With LM Series targets, a confirmed setup goes on to which target stands on which tile.
    if (Tag == "True" && m_state.TypeLMSeries) {
        RangeDisplay layout(m_state, m_operator);
        layout.Load();
        m_operator.show(layout);
        layout.Unload();
    }
    applyVisibility(true);
    gridReshaped();
}

void Form1::M_Ethernet() {
    if (!m_wifi) return;
    frmEthernetSetup dialog(*m_wifi, m_state.ConfigFile);
    m_operator.show(dialog);
    if (!dialog.Unload()) tell("The Wi-Fi settings could not be written to " + m_state.ConfigFile + ".");
}

void Form1::M_About() {
    AboutBox box;
    m_operator.show(box);
}

}  // namespace halvane
