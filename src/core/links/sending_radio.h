#pragma once
// frmSendingRadio: the progress window of the radio setup. It takes the shared port over on the setup
// window's port, and runs thirty ticks of 100 ms, counted down by its bar; the device's path and the
// operation decide what goes out at which tick. Its time is fixed: no reply ends it early. Nothing
// blocks: a reply is awaited while the ticks go on.

#include <chrono>
#include <optional>
#include <string>
#include <utility>

#include "authoring/window.h"
#include "links/progress_machine.h"
#include "links/radio_setup.h"
#include "links/reply_wait.h"

namespace halvane {

class frmSendingRadio : public Window, public ProgressMachine {
  public:
    static constexpr const char* Caption = "Sending";
    static constexpr int kTicks = 30;
    static constexpr std::chrono::milliseconds kTick{100};
    static constexpr std::chrono::milliseconds kSettle{100};
    static constexpr std::chrono::milliseconds kReplyBudget{1000};

    explicit frmSendingRadio(frmRadioSetup& setup);
    ~frmSendingRadio() override;

    std::string lblSend_Receive;
    int Value = kTicks;  // ProgressBar1, from kTicks down to 0

    // Takes the shared port over on the setup window's port; the ticks start once the line settles.
    void Load(TimePoint now);
    // Closes the port and gives ComPort back. Runs once, also when the window goes without it.
    void Unload();

    std::optional<TimePoint> nextDeadline() const override;
    void onTime(TimePoint now) override;
    bool closed() const override { return m_closed; }
    std::pair<int, int> progress() const override { return {Value, kTicks}; }
    std::string progressText() const override { return {}; }

    frmRadioSetup::Result result() const { return m_result; }
    // What the operator is to be told once the window has gone ("" for nothing).
    const std::string& message() const { return m_message; }

  private:
    void settle();
    void tick(TimePoint now);
    void usbProgram();
    void usbRead(TimePoint now);
    void lm47Frame(TimePoint now);
    // The reply awaited is whole, or its time is out: the channel it gives, if any.
    void endWait();
    // Sends bytes; false, with the run stopped, when the line will not take them.
    bool send(const std::string& bytes);
    void dropBoth();
    // Why the line failed, in words for the operator.
    std::string lineMessage() const;
    void stop(const std::string& why);
    void close(frmRadioSetup::Result result);

    frmRadioSetup& m_setup;
    bool m_program = false;
    bool m_loaded = false;
    bool m_unloaded = false;
    bool m_settled = false;
    bool m_noPort = false;
    bool m_closed = false;
    std::int16_t SavedComPort = 0;
    TimePoint m_settleAt{};
    TimePoint m_nextTick{};
    ReplyWait m_wait;
    TimePoint m_askedAt{};
    bool m_gotChannel = false;
    bool m_frameSent = false;
    frmRadioSetup::Result m_result = frmRadioSetup::Result::None;
    std::string m_message;
};

}  // namespace halvane
