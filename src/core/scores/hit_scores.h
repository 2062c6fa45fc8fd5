#pragma once
// FrmHitScores, "Read Hit Scores": collects every target's hits into a two-column grid, from the
// transmitter's block or by asking each target over the radio, tells the targets to clear their
// scores, and prints or saves the grid. Modeless; it uses the shared serial port.

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "authoring/control.h"
#include "authoring/program_grid.h"
#include "authoring/shared_state.h"
#include "authoring/window.h"
#include "links/hit_score_poll.h"
#include "links/reply_wait.h"
#include "links/serial_port.h"
#include "links/timed_machine.h"
#include "links/wifi_link.h"

namespace halvane {

class ComPortModule;
class Operator;

// Where a saved workbook's cells go: a spreadsheet file of the format the console cannot write with
// standard C++ alone. An error text, or "" when the file was written.
class WorkbookWriter {
  public:
    virtual ~WorkbookWriter() = default;
    virtual std::string write(const std::string& path, const std::vector<std::vector<std::string>>& rows) = 0;
};

// Prints the score sheet: the header line and the blocks of grid rows the print rule chooses.
class ScorePrinter;

class FrmHitScores : public Window, public TimedMachine {
  public:
    static constexpr const char* Caption = "Read Hit Scores";
    static constexpr int kGridRows = 201;
    static constexpr int kDefaultRowHeight = 240;  // twips

    // `clock` gives the time again after a question or dialog, which may have stood for a while.
    FrmHitScores(
        SharedState& state, ComPortModule* comPort, WifiLink* wifi, Operator& op,
        WorkbookWriter* workbooks = nullptr, ScorePrinter* printer = nullptr,
        std::function<TimePoint()> clock = [] { return SteadyClock::now(); });
    ~FrmHitScores() override;

    Control CmdDownload{"Download", true, true, 0, 0, 0, 0};
    Control CmdClear{"Clear Scores", true, true, 0, 0, 0, 0};
    Control CmdPrint{"Print", true, true, 0, 0, 0, 0};
    Control CmdSave{"Save", true, true, 0, 0, 0, 0};
    // The menu: M_File "&File" with M_Download, M_Print, M_Save, M_Config.
    ProgramGrid Grid;
    // A row of height 0 is hidden; RowData keeps a height while printing hides the row.
    std::vector<int> RowHeight, RowData;
    std::string Tag;  // the mailbox of frmHitScore_Option and frmPrint
    std::string PrintHeader, PrintRows;

    // The grid as its load makes it: 201 rows, the headings, and the row numbers.
    void Load();
    // Download: the road the settings choose, the transmitter's block or one query per target.
    void CmdDownload_Click(TimePoint now);
    // Asks, then tells every target to clear its score; the grid stays as it is.
    void CmdClear_Click(TimePoint now);
    void CmdPrint_Click();
    void CmdSave_Click();
    // The port search, as the main window shows it.
    void M_Config_Click() {
        if (portSearch) portSearch();
    }
    std::function<void()> portSearch;
    // Esc: stops a radio round, keeping the scores read so far.
    void Escape();
    void Unload();

    bool busy() const { return m_phase != Phase::Idle; }
    // How the last download or clear ended, for the command line.
    enum class Outcome { None, Done, NoScores, PortClosed, LineLost, LinkDown, Stopped };
    Outcome outcome() const { return m_outcome; }
    // Targets that answered in the last radio round.
    int answered() const { return m_poll.answered(); }
    // "Reading hit scores: target 3 of 20 (Esc stops)" during a radio round, "" otherwise.
    std::string progress() const;
    // Told when the window changed of itself (a round's progress, its end), for its view.
    void setChangeObserver(std::function<void()> observer) { m_changeObserver = std::move(observer); }

    // Replies: bytes of the shared serial line, chunks of the Wi-Fi link.
    void onSerial(std::string_view bytes);
    void onSocket(std::string_view chunk);
    std::optional<TimePoint> nextDeadline() const override;
    void onTime(TimePoint now) override;

  private:
    enum class Phase { Idle, Settling, Block, Round, ClearSettling };
    enum class Road { None, Transmitter, Radio };
    Road chooseRoad();
    bool portNeeded(Road road) const;
    SerialPort* port() const;
    bool openPort(bool needed, bool& settle);
    void listen();
    void stopListening();
    void startRoad(TimePoint now);
    void query(int target, TimePoint now);
    void targetDone();
    void abandonRound();
    void finishBlock();
    void finishRound();
    void setRows(int rows);
    void sendClear(TimePoint now);
    // The shared port lost its line under a download or a clear: told once, and it stops there.
    void lineLost();
    void changed() const;

    SharedState& m_state;
    ComPortModule* m_comPort;
    WifiLink* m_wifi;
    Operator& m_operator;
    WorkbookWriter* m_workbooks;
    ScorePrinter* m_printer;
    std::function<TimePoint()> m_clock;
    HitScorePoll m_poll;
    ReplyWait m_block;
    Phase m_phase = Phase::Idle;
    Road m_road = Road::None;
    Outcome m_outcome = Outcome::None;
    TimePoint m_due{};
    std::function<void()> m_changeObserver;
};

// frmHitScore_Option, "Download Hit Scores": which road, when both are offered.
class frmHitScore_Option : public Window {
  public:
    static constexpr const char* Caption = "Download Hit Scores";
    static constexpr const char* cmd_LMC = "Download From LMC Transmitter";
    static constexpr const char* cmd_USB = "Retrive From LM's with USB Radio";
    static constexpr const char* cmd_Cancel = "Cancel";
    explicit frmHitScore_Option(FrmHitScores& scores) : m_scores(scores) {}
    void cmd_LMC_Click() { choose("1"); }
    void cmd_USB_Click() { choose("2"); }
    void cmd_Cancel_Click() { choose("3"); }
    bool closed() const { return m_closed; }

  private:
    void choose(const char* tag) {
        m_scores.Tag = tag;
        m_closed = true;
    }
    FrmHitScores& m_scores;
    bool m_closed = false;
};

}  // namespace halvane
