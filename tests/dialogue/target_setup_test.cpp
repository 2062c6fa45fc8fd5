// The target setup window against simulated targets on a virtual clock: a read by serial number or
// by target number, a read with a silent step, a write and a read back, on the serial radio and over
// Wi-Fi, and the ways a transfer stops.

#include <gtest/gtest.h>

#include "../core/fake_links.h"
#include "links/wifi_link.h"
#include "scores/target_setup.h"
#include "scores/target_transfer.h"
#include "sim/devices.h"
#include "sim/range.h"
#include "virtual_port.h"

namespace halvane::testing {
namespace {

using namespace std::chrono_literals;

// The radio, made deaf to the read of one parameter, so that one step of a read goes unanswered.
class DeafTo : public sim::Device {
  public:
    explicit DeafTo(sim::Device& inner) : m_inner(inner) {}
    int index = 0;
    std::string name() const override { return m_inner.name(); }
    void receive(std::string_view bytes, sim::TimePoint now) override {
        const bool read = bytes.size() == 6 &&
                          static_cast<std::uint8_t>(bytes[0]) == wire::kParameterAccess &&
                          bytes[4] == index && static_cast<std::uint8_t>(bytes[5]) == wire::kReadMarker;
        if (!read) m_inner.receive(bytes, now);
    }
    std::vector<std::string> takeDue(sim::TimePoint now) override { return m_inner.takeDue(now); }
    std::optional<sim::TimePoint> nextDue() const override { return m_inner.nextDue(); }

  private:
    sim::Device& m_inner;
};

class TargetSetup : public ::testing::Test {
  protected:
    TargetSetup() { state.RadioUSB = true; }

    void open() {
        setup.reset();
        link.ServerIP = "127.0.0.1";
        link.ServerPort = "1";
        setup = std::make_unique<frmLM_Setup>(state, port, names, wifi ? &link : nullptr, op,
                                              [this] { return port.now; });
        setup->Load();
        pump();
    }
    // Read From Target with the entry typed into the serial and target number boxes.
    void read(const std::string& serial, const std::string& number = "") {
        op.script<frmSerialTarget>([=](frmSerialTarget& d) {
            d.txtSerialNum = serial;
            d.txtTargetNum = number;
            d.OKButton_Click();
        });
        op.script<frmRetrieving>([this](frmRetrieving& w) {
            run(w);
            replies = w.replies();
        });
        setup->Command1_Click();
    }
    void write() {
        op.script<frmLM_Send>([this](frmLM_Send& w) { run(w); });
        setup->Command2_Click();
    }
    void run(TargetTransfer& w) {
        if (!wifi) return port.run(w, [&w] { return w.closed(); });
        // Over Wi-Fi the clock wakes the link and the window; the bridge answers at once.
        while (!w.closed() && port.now < TimePoint(2h)) {
            TimePoint next = port.now + 100ms;
            for (const auto& d : {w.nextDeadline(), link.nextDeadline()})
                if (d) next = std::min(next, *d);
            port.now = std::max(port.now + 1us, next);
            link.onTime(port.now);
            pump();
            w.onTime(port.now);
        }
    }
    // Carries out what the Wi-Fi link asks, and hands it what the bridge has to say.
    void pump() {
        for (int round = 0; round < 4; ++round) {
            for (const WifiAction& a : link.takeActions()) {
                if (a.kind == WifiAction::Kind::Connect) {
                    bridge = sim::makeWifiBridge(range, {});
                    link.onState(TcpSocket::Connected, port.now);
                } else if (a.kind == WifiAction::Kind::Send) {
                    wifiFrames.push_back(hexBytes(a.bytes));
                    bridge->receive(a.bytes, port.now);
                } else if (a.kind == WifiAction::Kind::Tell) {
                    op.log.push_back("link: " + a.text);
                }
            }
            if (bridge)
                for (const auto& chunk : bridge->takeDue(port.now)) link.onData(chunk);
        }
    }
    // What the operator was told, the link's messages included.
    std::string messages() const {
        std::string out;
        for (const auto& line : op.log)
            if (line.rfind("show", 0) != 0) out += line + "\n";
        return out;
    }
    // The boxes and labels in the order of a read.
    std::string boxes() const {
        std::string out;
        for (const auto& p : target::readOrder()) out += (out.empty() ? "" : "|") + setup->box(p.index);
        return out;
    }
    void setBoxes(std::initializer_list<std::pair<int, const char*>> texts) {
        for (const auto& [index, text] : texts) setup->box(index) = text;
    }

    // Target 1 answers to serial 123456, target 2 to 7; no target has number 9.
    sim::Range range{2, {123456, 7}};
    std::unique_ptr<sim::Device> radio = sim::makeRadioModem(range, {});
    DeafTo deaf{*radio};
    VirtualPort port{deaf, {}};
    bool wifi = false;
    WifiLink link;
    std::unique_ptr<sim::Device> bridge;
    std::vector<std::string> wifiFrames;
    PortNames names;
    ScriptedOperator op;
    SharedState state;
    std::unique_ptr<frmLM_Setup> setup;
    int replies = -1;  // of the last read
};

const std::string kDelivered = "10|Die|1|Normal|Down|1|High|0|0|0|0|None|12.5|1.2";

TEST_F(TargetSetup, AReadFillsEveryBoxAndAWriteSendsTheTwelveAHalfSecondLaterATenthApart) {
    open();
    EXPECT_FALSE(setup->Command2.Enabled);
    read("123456");
    EXPECT_EQ(boxes(), kDelivered);
    EXPECT_EQ(setup->LBL_SN.Caption, "SN 123456");
    EXPECT_TRUE(setup->Command2.Enabled);
    EXPECT_EQ(hexBytes(port.writes.front().second), "F6 12 34 56 01 ED");
    EXPECT_EQ(port.writes.size(), 14u);

    setBoxes({{1, "12"}, {2, "Bob"}, {6, "5"}, {12, "3"}, {9, "Both"}});
    port.writes.clear();
    const TimePoint clicked = port.now;
    write();
    ASSERT_EQ(port.writes.size(), 12u);
    EXPECT_EQ(port.writes[0].first - clicked, 500ms);
    for (std::size_t i = 1; i < 12; ++i) EXPECT_EQ(port.writes[i].first - port.writes[i - 1].first, 100ms);
    EXPECT_EQ(hexBytes(port.writes[5].second), "F6 12 34 56 06 05");  // a new number, the same address
    EXPECT_EQ(hexBytes(port.writes[11].second), "F6 12 34 56 09 03");
    EXPECT_EQ(port.now - clicked, 1700ms);

    setBoxes({{1, ""}, {2, ""}});
    read("123456");
    EXPECT_EQ(boxes(), "12|Bob|1|Normal|Down|5|High|0|3|0|0|Both|12.5|1.2");
    EXPECT_EQ(messages(), "");
}

TEST_F(TargetSetup, ATargetNumberIsLookedUpFirstAndANumberNobodyAnswersIsNotFound) {
    open();
    read("", "2");  // target 2 answers to serial 7
    EXPECT_EQ(hexBytes(port.writes.front().second), "F4 02 00 00 00 00");
    EXPECT_EQ(setup->LBL_SN.Caption, "SN 000007");
    EXPECT_EQ(boxes(), "10|Die|1|Normal|Down|2|High|0|0|0|0|None|12.5|1.2");

    port.writes.clear();
    read("", "9");
    EXPECT_EQ(op.log.back(), "tell: Halvane: Target Number 9 Not Found");
    EXPECT_EQ(port.writes.size(), 1u);  // the lookup alone
    EXPECT_EQ(setup->LBL_SN.Caption, "SN 000007");
    EXPECT_EQ(setup->SnLow, "07");

    read("", "300");  // no byte: told, nothing sent
    EXPECT_EQ(op.log.back(),
              "tell: Halvane: Target Number 300 cannot be looked up: it is not a number from 0 to "
              "255. Nothing was sent.");
    EXPECT_EQ(port.writes.size(), 1u);
}

TEST_F(TargetSetup, ASilentStepAppliesTheLastReplyAgainAndASilentTargetReadsAsZeros) {
    const struct {
        int deafTo;
        const char* boxes;
    } cases[] = {
        {1, "0|Die|1|Normal|Down|1|High|0|0|0|0|None|12.5|1.2"},    // no reply yet: an empty value, 0
        {2, "10|old|1|Normal|Down|1|High|0|0|0|0|None|12.5|1.2"},   // "0A" is no code: the box stays
        {7, "10|Die|1|Normal|Down|1|Low|0|0|0|0|None|12.5|1.2"},    // the target number's 01 is Low
        {3, "10|Die|2|Normal|Down|1|High|0|0|0|0|None|12.5|1.2"},   // Hit Mode's 02 again
        {10, "10|Die|1|Normal|Down|1|High|0|0|0|0|None|0|1.2"},     // Data Port's 00, in volts
        {16, "10|Die|1|Normal|Down|1|High|0|0|0|0|None|12.5|0.7"},  // the battery's 7D read as decimal
    };
    open();
    for (const auto& c : cases) {
        deaf.index = c.deafTo;
        setup->box(2) = "old";
        read("123456");
        EXPECT_EQ(boxes(), c.boxes) << c.deafTo;
        EXPECT_EQ(replies, 13) << c.deafTo;
    }
    range.withTargets([](auto& targets) { targets[0].serial = 1; });  // nobody answers 123456 now
    deaf.index = 0;
    const TimePoint clicked = port.now;
    read("123456");
    EXPECT_EQ(port.now - clicked, 14500ms);
    EXPECT_EQ(boxes(), "0|Die|0|Normal|Down|0|High|0|0|0|0|None|0|0");  // coded boxes stay
    EXPECT_EQ(replies, 0);
    EXPECT_TRUE(setup->Command2.Enabled);
}

TEST_F(TargetSetup, OverWifiTheConversionsDifferAsTargetsInTheFieldExpect) {
    state.RadioUSB = false;
    state.RadioWiFi = wifi = true;
    open();
    read("123456");
    EXPECT_EQ(boxes(), kDelivered);
    EXPECT_EQ(wifiFrames.front(), "00 F6 12 34 56 01 ED");
    setBoxes({{1, "12"}, {3, "16"}, {6, "16"}, {2, "nonsense"}});
    write();
    EXPECT_EQ(wifiFrames[14 + 1], "00 F6 12 34 56 02 00");  // a text with no code goes as 0
    read("123456");
    EXPECT_EQ(boxes(), "18|Off|10|Normal|Down|10|High|0|0|0|0|None|12.5|1.2");
    EXPECT_EQ(messages(), "");

    // With the serial radio too, each write goes on both links, each by its own rules; Load Defaults
    // changes nothing.
    state.RadioUSB = true;
    open();
    setup->Check1 = false;
    setup->LBL_SN.Caption = "SN 123456";
    setup->Command2.Enabled = true;
    setBoxes({{1, "12"}, {2, "Die"}});
    wifiFrames.clear();
    write();
    ASSERT_EQ(port.writes.size(), 12u);
    ASSERT_EQ(wifiFrames.size(), 12u);
    EXPECT_EQ(hexBytes(port.writes[0].second) + " / " + wifiFrames[0],
              "F6 12 34 56 01 0C / 00 F6 12 34 56 01 12");
    EXPECT_EQ(hexBytes(port.writes[1].second) + " / " + wifiFrames[1],
              "F6 12 34 56 02 02 / 00 F6 12 34 56 02 02");
}

TEST_F(TargetSetup, AWriteStopsAtABoxThatIsNoByteAndAtAPortThatIsNotOpen) {
    open();
    read("123456");
    setBoxes({{2, "Sideways"}, {6, "300"}});
    port.writes.clear();
    write();
    ASSERT_EQ(port.writes.size(), 5u);                             // up to the box before Target Number
    EXPECT_EQ(hexBytes(port.writes[1].second), "F6 12 34 56 02");  // no code: no value byte
    EXPECT_EQ(op.log.back(),
              "tell: Halvane: Target Number \"300\" cannot be written to the target: it is not a number from "
              "0 to 255. "
              "The settings before it were sent; nothing after it was.");

    // A line controller gets the frames on a port that only the serial radio opens.
    setup->Unload();
    state.RadioUSB = false;
    state.TypeVMR4000 = true;
    open();
    setup->Command2.Enabled = true;
    setup->LBL_SN.Caption = "SN 123456";
    write();
    EXPECT_EQ(op.log.back(),
              "tell: Halvane: Comm Port 1 is not open, so the frames for the target cannot go "
              "out. Nothing more was sent.");
}

TEST(TargetSetupWindow, ItsOwnPortOpensWithBothLinesUpAndTheEntryNamesTheTarget) {
    SharedState state;
    state.RadioUSB = true;
    state.ComPort = 4;
    PortNames names;
    names.setDevice(4, "/dev/radio");
    FakeSerialPort port;
    port.present.insert("/dev/radio");
    ScriptedOperator op;
    frmLM_Setup setup(state, port, names, nullptr, op);
    setup.Load();
    EXPECT_EQ(port.calls, (std::vector<std::string>{"open /dev/radio", "RTS on", "DTR on"}));
    EXPECT_EQ(port.inputDrops, 0);
    EXPECT_EQ(setup.list(*target::byIndex(6)).size(), 201u);
    setup.Unload();
    EXPECT_FALSE(port.isOpen());

    port.present.clear();
    frmLM_Setup failed(state, port, names, nullptr, op);
    failed.Load();
    EXPECT_EQ(op.log, std::vector<std::string>{"tell: Halvane: Comm Port 4 in use or invalid"});
    EXPECT_EQ(failed.list(*target::byIndex(6)).back(), "20");

    const struct {
        const char* serial;
        const char* number;
        const char* tag;
    } entries[] = {{"0123", "5", "SN123"}, {"", "07", "TN7"}, {"abc", "", "SN0"}, {"", "", ""}};
    for (const auto& e : entries) {
        frmSerialTarget entry(setup);
        entry.txtSerialNum = e.serial;
        entry.txtTargetNum = e.number;
        entry.OKButton_Click();
        EXPECT_EQ(setup.Tag, e.tag);
    }
}

}  // namespace
}  // namespace halvane::testing
