// The serial line's readers and port handling, and the Wi-Fi link with its window, on a virtual clock.

#include <gtest/gtest.h>

#include <functional>

#include "authoring/shared_state.h"
#include "fake_links.h"
#include "links/com_port.h"
#include "links/ethernet_setup.h"
#include "links/timed_read.h"
#include "links/wifi_link.h"
#include "scripted_operator.h"
#include "temp_dir.h"

namespace halvane {
namespace {

using namespace std::chrono_literals;
const TimePoint t0{};

TEST(TimedRead, TakesUpToTheCountWithinOneBudgetForTheWholeReply) {
    using enum TimedRead::Status;
    // `leftOver`: bytes not taken, left with the port.
    // clang-format off
    struct Case { const char* name; std::size_t count;
                  std::vector<std::pair<std::chrono::milliseconds, std::string>> arrivals;
                  TimedRead::Status status; std::string slot; std::size_t leftOver; };
    const Case cases[] = {
        {"exact length ends at once", 3, {{10ms, "VER"}}, Done, "VER", 0},
        {"bytes beyond the count stay unread", 3, {{10ms, "VER1.2"}}, Done, "VER", 3},
        {"pieces add up", 4, {{100ms, "AB"}, {900ms, "CD"}}, Done, "ABCD", 0},
        {"one budget, not one per byte", 4, {{500ms, "AB"}, {1000ms, "CD"}}, TimedOut, "AB", 2},
        {"silence", 2, {}, TimedOut, "", 0},
    };
    // clang-format on
    for (const auto& c : cases) {
        std::string slot = "old remains";
        TimedRead read(slot, c.count, t0);
        std::size_t leftOver = 0;
        for (const auto& [at, bytes] : c.arrivals) leftOver += bytes.size() - read.feed(bytes, t0 + at);
        read.tick(t0 + 1000ms);
        EXPECT_EQ(read.status(), c.status) << c.name;
        EXPECT_EQ(slot, c.slot) << c.name;
        EXPECT_EQ(leftOver, c.leftOver) << c.name;
    }
}

TEST(TimedRead, ReadersResultsAndWhatATimeOutLeaves) {
    std::string slot;
    const auto waited = [&](std::size_t count, const std::string& bytes) {
        TimedRead read(slot, count, t0);
        read.feed(bytes, t0 + 5ms);
        read.tick(t0 + 1s);
        return read;
    };
    auto reply = waited(5, "12345");
    EXPECT_EQ(ReadReplyResult(reply, slot), '1');
    EXPECT_TRUE(slot.empty());
    auto late = waited(5, "12");
    EXPECT_EQ(ReadReplyResult(late, slot), std::nullopt) << "the caller keeps the reply of the step before";
    EXPECT_EQ(slot, "12");
    auto chars = waited(3, "VER");
    EXPECT_EQ(ReadCharsResult(chars, slot), "VER");

    std::array<std::string, 202> replyHex;
    replyHex[5] = "kept";
    beginHitBlock(replyHex);
    auto partial = waited(kHitBlockSize, std::string(200, '\x01'));
    EXPECT_FALSE(ReadHitBlockResult(partial, slot, replyHex));
    EXPECT_EQ(replyHex[0] + " " + replyHex[5], "0 kept");
    std::string block(kHitBlockSize, '\0');
    block[0] = '\x0A';
    block[200] = '\xFF';
    auto whole = waited(kHitBlockSize, block);
    EXPECT_TRUE(ReadHitBlockResult(whole, slot, replyHex));
    EXPECT_EQ(replyHex[0] + " " + replyHex[200], "A FF");
}

TEST(ComPort, OpensOnComPortTellsWhenItCannotAndScansWithoutTouchingComPort) {
    SharedState state;
    testing::FakeSerialPort port;
    PortNames names;
    names.setDevice(3, "/dev/pts/7");
    testing::ScriptedOperator op;
    ComPortModule module(state, port, names, op);
    port.present = {"/dev/pts/7", "/dev/ttyUSB0"};

    state.ComPort = 17;
    module.OpenComPort();
    EXPECT_FALSE(module.PortOpen());
    EXPECT_EQ(op.log.back(), "tell: Halvane: Comm Port 17 in use or invalid");
    state.ComPort = 3;
    port.input = "stale";
    module.OpenComPort();
    EXPECT_EQ(port.opened, "/dev/pts/7");
    EXPECT_TRUE(port.input.empty()) << "opening drops what was waiting";
    module.OpenComPort();  // already open on this device: still one port, no message
    EXPECT_EQ(op.log.size(), 1u);

    module.ScanComPorts();
    EXPECT_FALSE(module.PortOpen()) << "the scan closes the shared port and leaves every port closed";
    for (int p = 1; p <= 16; ++p)
        EXPECT_EQ(state.PortPresent[static_cast<std::size_t>(p)], p == 3 || p == 5) << p;
    EXPECT_EQ(state.ComPort, 3);
}

TEST(PortNames, DefaultsAndOverridesFromTheConfiguration) {
    PortNames names;
#ifndef _WIN32
    EXPECT_EQ(names.device(1) + " " + names.device(16), "/dev/ttyS0 /dev/ttyACM3");  // 5 is seen in the scan
#endif
    testing::TempDir dir;
    testing::writeBytes(dir / "hvn.cfg", "[Port Names]\r\nCOM2=/dev/pts/9\r\n");
    names.readOverrides(dir.file("hvn.cfg"));
    EXPECT_EQ(names.device(2), "/dev/pts/9");
}

// A link on a socket in memory, and what it told the operator.
struct WifiRig {
    testing::FakeTcpSocket socket;
    testing::ScriptedOperator op;
    WifiLink link{socket, op};
    explicit WifiRig(std::string port = "31689") {
        link.ServerIP = "169.254.10.1";
        link.ServerPort = std::move(port);
    }
};
struct Wifi : ::testing::Test, WifiRig {};

const std::string kFrame("\0\xF3\x05", 3);
const std::string kNotConnected = "tell: Halvane: Error: ethernet not connected.  Check settings.";

TEST(WifiHello, FramesOfAFreshConnectionWaitForTheHelloOrItsDeadlineWhileTheConnectionLasts) {
    // clang-format off
    struct Case { const char* name; std::function<void(WifiRig&)> at100ms;
                  std::string sentBy219ms, sentBy220ms; std::vector<std::string> told; };
    const Case cases[] = {
        {"no hello: the frames go when the wait ends", [](WifiRig&) {}, "", kFrame, {}},
        {"the hello ends the wait", [](WifiRig& r) { r.link.onData(WifiLink::kHello); }, kFrame, kFrame, {}},
        {"a connect by the button keeps the wait",
         [](WifiRig& r) { r.link.EthernetConnect(t0 + 100ms); }, "", kFrame, {}},
        {"the connection drops: the frames are dropped and told",
         [](WifiRig& r) { r.socket.current = TcpSocket::Closed; r.link.poll(t0 + 100ms); }, "", "",
         {kNotConnected}},
    };
    // clang-format on
    for (const auto& c : cases) {
        WifiRig r;
        r.link.EthernetCommand(kFrame, t0);
        EXPECT_EQ(r.link.nextDeadline(), t0 + WifiLink::kConnectBudget) << c.name;
        r.socket.current = TcpSocket::Connected;
        r.link.poll(t0 + 20ms);
        EXPECT_EQ(r.link.nextDeadline(), t0 + 220ms) << c.name << ": nothing else wakes the link";
        c.at100ms(r);
        r.link.poll(t0 + 219ms);
        EXPECT_EQ(r.socket.sent, c.sentBy219ms) << c.name;
        r.link.poll(t0 + 220ms);
        EXPECT_EQ(r.socket.sent, c.sentBy220ms) << c.name;
        EXPECT_EQ(r.op.log, c.told) << c.name;
        EXPECT_EQ(r.link.nextDeadline(), std::nullopt) << c.name;
    }
}

TEST(WifiPort, APortThatIsNoWholeNumberFrom1To65535IsRefusedBeforeAnyConnect) {
    // clang-format off
    struct Case { const char* text; std::uint16_t connectsTo; };  // 0: refused
    const Case cases[] = {{"abc", 0}, {"", 0}, {"99999", 0}, {"0", 0}, {"1.5", 0}, {"-1", 0}, {"80x", 0},
                          {"1", 1}, {"65535", 65535}, {" 31689 ", 31689}};
    // clang-format on
    for (const auto& c : cases) {
        WifiRig r(c.text);
        r.socket.port = 9;  // the port of an earlier connect, which a refused text must not reuse
        r.link.EthernetCommand(kFrame, t0);
        r.link.EthernetCommand(kFrame, t0);  // a burst asks once
        std::vector<std::string> told{kNotConnected};
        if (c.connectsTo == 0)
            told.insert(told.begin(), "tell: Halvane: Server Port \"" + std::string(c.text) +
                                          "\" is not valid: use a whole number from 1 to 65535.");
        r.link.poll(t0);
        EXPECT_EQ(r.op.log.size(), c.connectsTo == 0 ? 2u : 0u) << c.text << ": a refusal does not wait";
        r.link.poll(t0 + WifiLink::kConnectBudget - 1ms);
        EXPECT_EQ(r.op.log.size(), c.connectsTo == 0 ? 2u : 0u) << c.text;
        r.link.poll(t0 + WifiLink::kConnectBudget);
        EXPECT_EQ(r.op.log, told) << c.text << ": a plain time-out of the connect itself is silent";
        EXPECT_EQ(r.socket.connects, c.connectsTo == 0 ? 0 : 1) << c.text;
        EXPECT_EQ(r.socket.host, c.connectsTo == 0 ? "" : "169.254.10.1") << c.text;
        EXPECT_EQ(r.socket.port, c.connectsTo == 0 ? 9 : c.connectsTo) << c.text;
        EXPECT_TRUE(r.socket.sent.empty()) << c.text;
    }
}

TEST_F(Wifi, TheHelloIsDroppedOnlyWhenItComesAloneAndEverythingIsLogged) {
    socket.current = TcpSocket::Connected;
    link.onData("*KRV_CONN*");
    EXPECT_EQ(link.sock_GetData(), "");
    link.onData(std::string("\xEA\x07", 2));
    link.onData("*KRV_CONN*\xEA");
    EXPECT_EQ(link.sock_GetData(), "\xEA\x07*KRV_CONN*\xEA");
    EXPECT_EQ(link.log(), "*KRV_CONN*\r\n\xEA\x07\r\n*KRV_CONN*\xEA\r\n");
    link.onError(10054, "Connection reset by peer");
    EXPECT_EQ(op.log.back(), "tell: Halvane: Socket Error 10054: Connection reset by peer");
    EXPECT_EQ(socket.current, TcpSocket::Closed);
}

TEST_F(Wifi, SetupWindowShowsStateWordsAndTheButtonDecidesTheClick) {
    const std::pair<int, const char*> words[] = {{7, "Connected"}, {0, "Closed"}, {6, "Connecting"},
                                                 {8, "Closing"},   {9, "Error"},  {3, "Unknown"}};
    for (const auto& [state, text] : words) EXPECT_STREQ(frmEthernetSetup::statusWords(state), text);
    EXPECT_STREQ(frmEthernetSetup::buttonCaption(6), "Disconnect");
    EXPECT_STREQ(frmEthernetSetup::buttonCaption(9), "Connect");

    testing::TempDir dir;
    frmEthernetSetup window(link, dir.file("hvn.cfg"));
    EXPECT_EQ(window.lblEthernetStatus, "Closed");
    EXPECT_TRUE(window.serverFieldsEnabled);
    window.btnEthernetConnect_Click(t0);
    EXPECT_TRUE(window.busy());
    socket.current = TcpSocket::Connected;
    link.onData("*KRV_CONN*");
    link.onData("x");
    link.poll(t0 + 50ms);
    EXPECT_EQ(window.lblEthernetStatus, "Connected");
    EXPECT_EQ(link.sock_GetData(), "") << "what came in on the way is dropped";
    EXPECT_EQ(window.txtbxEthernetData, "*KRV_CONN*\r\nx\r\n");

    window.txtbxServerIP() = "169.254.3.3";
    window.btnEthernetConnect_Click(t0 + 1s);
    EXPECT_EQ(window.lblEthernetStatus, "Closed");
    EXPECT_TRUE(window.Unload());
    EXPECT_EQ(testing::readBytes(dir / "hvn.cfg"),
              "[Settings]\r\nEthernetIP=169.254.3.3\r\nEthernetPort=31689\r\n");
    frmEthernetSetup again(link, dir.file("hvn.cfg"));
    EXPECT_EQ(again.txtbxServerIP(), "169.254.3.3") << "the fields keep the operator's values";
}

}  // namespace
}  // namespace halvane
