// The radio setup window on a virtual clock over a port in memory: what goes on the line at which tick
// for each radio and operation, the channel a reply gives, the buttons' refusals, a failing line, and
// the port and ComPort as the window leaves them.

#include <gtest/gtest.h>

#include <chrono>

#include "fake_links.h"
#include "links/com_port.h"
#include "links/radio_setup.h"
#include "links/sending_radio.h"
#include "scripted_operator.h"

namespace halvane::testing {
namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;
using Result = frmRadioSetup::Result;
using Lines = std::vector<std::string>;
using Device = std::vector<std::pair<std::chrono::milliseconds, std::string>>;

// The line as a monitor shows it, each event at its milliseconds from the click: text as it goes
// ("1100 ATWR\r"), frames in hexadecimal, "drop" for the input dropped; "|" between events.
class MonitoredPort : public FakeSerialPort {
  public:
    MonitoredPort(const TimePoint& now, TimePoint start) : m_now(now), m_start(start) {}
    std::string events;  // "100 +++|1100 drop"
    bool refuse = false;

    // A port that opens has its line back.
    bool open(const std::string& device) override {
        clearLost();
        return FakeSerialPort::open(device);
    }
    bool write(std::string_view bytes) override {
        if (refuse || !FakeSerialPort::write(bytes)) return false;
        const bool text = static_cast<std::uint8_t>(bytes[0]) < 0x80;
        note(text ? std::string(bytes) : hexBytes(bytes));
        return true;
    }
    void dropInput() override {
        FakeSerialPort::dropInput();
        note("drop");
    }

  private:
    void note(const std::string& what) {
        events += (events.empty() ? "" : "|") + std::to_string((m_now - m_start) / 1ms) + " " + what;
    }
    const TimePoint& m_now;
    TimePoint m_start;
};

class RadioSetup : public ::testing::Test {
  protected:
    RadioSetup() {
        state.RadioUSB = true;
        state.ComPort = 5;
        port.present = {names.device(3)};
        window.Load();
        window.cmbComPort = "3";
    }

    // Clicks Program or Read From Radio; the progress window runs on the clock while the device
    // speaks at its times (an empty text: the line goes away).
    void click(bool program, Device device = {}) {
        op.script<frmSendingRadio>([this, device](frmSendingRadio& w) mutable {
            while (!w.closed()) {
                const TimePoint due = *w.nextDeadline();
                if (!device.empty() && start + device.front().first < due) {
                    now = start + device.front().first;
                    device.front().second.empty() ? port.hangUp() : port.receive(device.front().second);
                    device.erase(device.begin());
                    continue;
                }
                now = std::max(now, due);
                w.onTime(now);
            }
            closedAt = (now - start) / 1ms;
        });
        program ? window.Command1_Click() : window.Command3_Click();
    }
    SharedState state;
    const TimePoint start{1h};
    TimePoint now{start};
    MonitoredPort port{now, start};
    PortNames names;
    ScriptedOperator op;
    ComPortModule comPort{state, port, names, op};
    frmRadioSetup window{state, comPort, op, [this] { return now; }};
    long closedAt = -1;
};

TEST_F(RadioSetup, EachRadioAndOperationSendsAtItsTicksAndReadsTheChannelBack) {
    // Between the drops of the open (0 ms) and the settle (100 ms) and of the close at 3.0 s.
    const std::string usbRead = "100 +++|1100 drop|1100 ATHP\r|1100 drop|",
                      lm47Read = "200 F6 01 00 01 13 ED";
    const std::string reply = "\xF6\x01\x00\x01\x13"s;
    const struct {
        const char* serial;  // "" for the USB radio
        bool program;
        Device device;
        std::string line;
        const char* channel;  // the box after; "6" before
        Result result;
    } cases[] = {
        // A serial number too long to split addresses the last target split, at first 0.
        {"1234567", false, {}, "200 F6 00 00 00 13 ED", "6", Result::NoReply},
        {"", true, {}, "100 +++|1100 drop|1100 ATHP6\r|1100 ATWR\r|1100 ATCN\r|1600 drop", "6", Result::Done},
        // The modem's answer to "+++" is never read.
        {"", false, {{200ms, "OK\r"}, {1130ms, "3\r"}}, usbRead + "1130 ATCN\r", "3", Result::Done},
        {"", false, {{1130ms, "A\r"}}, usbRead + "1130 ATCN\r", "11", Result::Done},
        {"", false, {{1130ms, ":\r"}}, usbRead + "1130 ATCN\r", "6", Result::NoReply},
        {"", false, {}, usbRead + "2100 ATCN\r", "6", Result::NoReply},
        {"", false, {{1130ms, "5"}}, usbRead + "2100 ATCN\r", "6", Result::NoReply},
        {"1875", true, {}, "200 F6 00 18 75 13 06", "6", Result::Done},
        // A reply before the listening tick counts; the budget ends 1.0 s after that tick, at 1.6 s.
        {"10001", false, {{250ms, reply + "\x05"}}, lm47Read, "5", Result::Done},
        {"10001", false, {{1590ms, reply + "\x10"}}, lm47Read, "10", Result::Done},
        {"10001", false, {{300ms, reply + "\x0C"}}, lm47Read, "0", Result::Done},
        {"10001", false, {{1610ms, reply + "\x05"}}, lm47Read, "6", Result::NoReply},
        {"10001", false, {{300ms, reply}}, lm47Read, "6", Result::NoReply},
        {"1234567", false, {}, lm47Read, "6", Result::NoReply},
    };
    for (const auto& c : cases) {
        const std::string what = c.serial + std::string(c.program ? " program " : " read ") + c.channel;
        port.events.clear();
        op.log.clear();
        now = start;
        window.CmbRadio = *c.serial ? frmRadioSetup::kLM47 : frmRadioSetup::kUSB;
        window.txtLMSN = c.serial;
        window.cmbchannel = "6";
        click(c.program, c.device);
        EXPECT_EQ(port.events, "0 drop|100 drop|" + c.line + "|3000 drop") << what;
        EXPECT_EQ(window.cmbchannel, c.channel) << what;
        EXPECT_EQ(window.result(), c.result) << what;
        EXPECT_EQ(closedAt, 3000) << what;
        // Only the USB radio's silence is told, after the window has gone.
        Lines log = {c.program ? "show: Sending Sending data please wait."
                               : "show: Sending Receiving data please wait."};
        if (c.result == Result::NoReply && !*c.serial)
            log.push_back("tell: Halvane: No reply from the radio");
        EXPECT_EQ(op.log, log) << what;
        EXPECT_EQ(state.ComPort, 5) << what;
        EXPECT_FALSE(port.isOpen()) << what;
    }
    EXPECT_EQ(port.calls[0], "open " + names.device(3));

    // Without a serial carrier in the settings no frame goes out.
    state.RadioUSB = false;
    port.events.clear();
    now = start;
    click(false);
    EXPECT_EQ(port.events, "0 drop|100 drop|3000 drop");
    EXPECT_EQ(window.result(), Result::NoFrame);
}

TEST_F(RadioSetup, TheButtonsRefuseWhatCannotGoOutAndSendNothing) {
    const std::string notByte = "\" cannot be sent to the target: it is not a whole number from 0 to 255.";
    const struct {
        const char* serial;  // "" for the USB radio
        bool program;
        const char* channel;
        std::string told;  // "" when the window runs
    } cases[] = {
        {"1874", true, "3", "Only works on SN 1875 and higher"},
        {"1875", true, "3", ""},
        {"", false, "3", "Must enter a Vailid SN greater than 0"},
        {"1", false, "3", ""},
        {"1875", true, "256", "Channel \"256" + notByte + " Nothing was sent."},
        {"1875", true, "2.5", "Channel \"2.5" + notByte + " Nothing was sent."},
        // Typed text goes into the frame as its value, 0.
        {"1875", true, "abc", ""},
        {"", true, "3\t",
         "Channel \"3\t\" cannot be sent to the radio: it holds a character that is not plain text. Nothing "
         "was "
         "sent."},
        {"", true, "abc", ""},
    };
    for (const auto& c : cases) {
        op.log.clear();
        port.written.clear();
        window.CmbRadio = *c.serial || !c.program ? frmRadioSetup::kLM47 : frmRadioSetup::kUSB;
        window.txtLMSN = c.serial;
        window.cmbchannel = c.channel;
        click(c.program);
        const std::string what = std::string(c.serial) + "/" + c.channel;
        if (!c.told.empty()) {
            EXPECT_EQ(op.log, Lines{"tell: Halvane: " + c.told}) << what;
            EXPECT_EQ(port.written, "") << what;
            EXPECT_EQ(window.result(), Result::Refused) << what;
        } else {
            EXPECT_EQ(op.log.at(0).substr(0, 13), "show: Sending") << what;
            EXPECT_NE(window.result(), Result::Refused) << what;
        }
    }
}

TEST_F(RadioSetup, APortThatDoesNotOpenOrALineThatFailsEndsTheRunWithThePortClosedAndComPortBack) {
    const std::string shown = "show: Sending Sending data please wait.",
                      stopped = " The radio setup stopped;";
    const struct {
        const char* port;
        bool refuse;
        Device device;
        Lines log;
        long closedAt;
        Result result;
    } cases[] = {
        {"4", false, {}, {"tell: Halvane: Comm Port 4 in use or invalid", shown}, 100, Result::NoPort},
        {"3",
         false,
         {{500ms, ""}},
         {shown, "tell: Halvane: Comm Port 3: the line went away (unplugged)." + stopped +
                     " the channel may not be set."},
         500,
         Result::Stopped},
        {"3",
         true,
         {},
         {shown,
          "tell: Halvane: Comm Port 3 would not take the bytes." + stopped + " the channel may not be set."},
         100,
         Result::Stopped},
    };
    window.CmbRadio = frmRadioSetup::kUSB;
    for (const auto& c : cases) {
        op.log.clear();
        now = start;
        window.cmbComPort = c.port;
        port.refuse = c.refuse;
        click(true, c.device);
        EXPECT_EQ(op.log, c.log) << c.closedAt;
        EXPECT_EQ(closedAt, c.closedAt);
        EXPECT_EQ(window.result(), c.result);
        EXPECT_EQ(state.ComPort, 5);
        EXPECT_FALSE(port.isOpen());
    }
}

TEST_F(RadioSetup, TheSerialBoxTakesDigitsAndBackspaceAndOnlyTheLm47ShowsIt) {
    const std::pair<char, bool> keys[] = {{'0', true}, {'9', true}, {'\b', true}, {'a', false}, {'-', false}};
    for (const auto& [key, passes] : keys) EXPECT_EQ(frmRadioSetup::txtLMSN_KeyPress(key), passes ? key : 0);
    EXPECT_TRUE(window.lbllmsn.Visible);
    window.CmbRadio = frmRadioSetup::kUSB;
    window.CmbRadio_Click();
    EXPECT_FALSE(window.lbllmsn.Visible);
}

}  // namespace
}  // namespace halvane::testing
