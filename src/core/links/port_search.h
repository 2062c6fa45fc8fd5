#pragma once
// frmCommPorts, "Com Ports": half a second after it opens, the window finds which of the ports 1-16
// exist, asks each for a transmitter and then for a radio, and offers the ports with the finding; OK
// keeps the port chosen in hvn.cfg. It keeps painting while it asks, and asks all ports at once, which
// the devices cannot tell from being asked one by one. A port is found to exist by the opening for its
// first question: a device sees the same bytes as when the scan opened and closed it before.

#include <array>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "authoring/shared_state.h"
#include "authoring/window.h"
#include "links/port_choice.h"
#include "links/port_probes.h"
#include "links/timed_machine.h"

namespace halvane {

class ComPortModule;
class Operator;

class frmCommPorts : public Window, public TimedMachine {
  public:
    static constexpr const char* Caption = "Com Ports";
    static constexpr const char* Label2 = "Searching for Comm Ports";
    static constexpr const char* Label3 = "Please Wait";
    static constexpr const char* Frame1 = "Com Ports";
    static constexpr std::chrono::milliseconds kTimer1{500};

    // `atOnce`: how many ports are asked at the same time (1 asks them one by one).
    frmCommPorts(
        SharedState& state, ComPortModule& comPort, PortProbes::PortFactory newPort, Operator& op,
        std::function<TimePoint()> clock = [] { return SteadyClock::now(); }, int atOnce = kLastPort);
    ~frmCommPorts() override;

    // The caption of a port's option: "Com 1" ... "Com 14", "Com15", "Com 16".
    static std::string OptionCaption(int port);

    void Load(TimePoint now);
    std::optional<TimePoint> nextDeadline() const override;
    void onTime(TimePoint now) override;

    // Searching: the two waiting labels and what is being asked. Choosing: Frame1 with the options,
    // Label1 and the buttons.
    bool searching() const { return m_stage != Stage::Choosing && m_stage != Stage::Closed; }
    bool closed() const { return m_stage == Stage::Closed; }
    // What the search is doing now, in words, for the window while it searches.
    std::string progressText() const;
    const std::string& Label1() const { return m_choice.Label1; }
    bool OptionEnabled(int port) const;
    // The port whose option is set; 0 for none.
    int selected() const { return m_choice.selected; }
    // The operator sets an option; one that is disabled cannot be set.
    void Option1_Click(int port);
    // Sets ComPort to the port chosen and writes it to hvn.cfg; with none chosen nothing happens. True
    // when the port was stored.
    bool OKButton_Click();
    void CancelButton_Click();

  private:
    enum class Stage { Loaded, Transmitter, Radio, Choosing, Closed };
    void startRound(const ProbeQuestion& question, PortProbes::Opening opening, std::vector<int> ports,
                    TimePoint now);
    void endSearch();

    SharedState& m_state;
    ComPortModule& m_comPort;
    PortProbes::PortFactory m_newPort;
    Operator& m_operator;
    std::function<TimePoint()> m_clock;
    int m_atOnce;
    Stage m_stage = Stage::Loaded;
    std::optional<TimePoint> m_timer1;
    std::unique_ptr<PortProbes> m_round;
    std::vector<std::unique_ptr<PortProbes>> m_finished;  // kept: their ports may still be in a callback
    std::vector<std::string> m_failures;                  // told when the search is over
    std::int16_t m_comPortBefore = 0;
    PortChoice m_choice;
};

}  // namespace halvane
