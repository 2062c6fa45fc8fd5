#pragma once
// The small windows around the transmitter dialogues: the program number (frmSend, frmDownload), the
// progress window that runs a dialogue (frmSending, frmDownloading), and frmFailed.

#include <string>

#include "authoring/window.h"

namespace halvane {

class Dialogue;
class SerialPort;

class ProgramNumberDialog : public Window {
  public:
    // `caption` is "Send" or "Download".
    explicit ProgramNumberDialog(std::string caption) : Caption(std::move(caption)) {}

    std::string Caption;
    static constexpr const char* Label1 = "Program Number";
    std::string Text1 = "1";

    void CmdPlus();
    void CmdMinus();
    // frmSend: ProgramNumber = the value of the leading digits of Text1, unbounded. frmDownload: the
    // number Val reads, rounded to 16 bits ("2.7" is 3, "&HA" is 10, "1 0" is 10); one below 0 or
    // beyond 16 bits names no place: Problem says so and ProgramNumber stays 0. 0 acts like Cancel.
    void OKButton();
    void CancelButton() { m_closed = true; }
    bool closed() const { return m_closed; }
    int ProgramNumber = 0;
    std::string Problem;

  private:
    int m_counter = 1;
    bool m_closed = false;
};

// A progress window: shown modal, it runs its dialogue on the port after its first tick (500 ms) and
// closes when the dialogue ends.
struct ProgressWindow : Window {
    ProgressWindow(std::string caption, std::string label1, Dialogue& dialogue, SerialPort& port)
        : Caption(std::move(caption)), Label1(std::move(label1)), dialogue(dialogue), port(port) {}

    std::string Caption;
    std::string Label1;
    std::string Label2 = "Please Wait";
    Dialogue& dialogue;
    SerialPort& port;
};

struct FailedBox : Window {
    static constexpr const char* Caption = "Communication Failed";
    static constexpr const char* Label1 = "Communications Failed";
    static constexpr const char* Label2 = "Make sure LMC is connected and is in PC Comm Mode";
    static constexpr const char* Label3 =
        "If this continues to happens. On the LMC exit all the way back to the main menu and enter PC Comm "
        "Mode "
        "again.";
};

}  // namespace halvane
