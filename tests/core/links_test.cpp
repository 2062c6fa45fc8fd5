// The serial line's readers and port handling, and the Wi-Fi link with its window, on a virtual clock.

#include <gtest/gtest.h>

#include <functional>

#include "authoring/shared_state.h"
#include "fake_links.h"
#include "links/com_port.h"
#include "links/ethernet_setup.h"
#include "links/timed_read.h"
#include "links/wifi_driver.h"
#include "links/wifi_link.h"
#include "scripted_operator.h"
#include "temp_dir.h"

namespace halvane {
namespace {

using namespace std::chrono_literals;
const TimePoint t0{};

// How a wait takes its bytes within one budget is the dialogues' to show; here, what the readers make of
// a wait that ended, and what a time-out leaves.
TEST(TimedRead, ReadersResultsAndWhatATimeOutLeaves) {
    std::string slot;
    const auto waited = [&](std::size_t count, const std::string& bytes) {
        TimedRead read(slot, count, t0);
        read.feed(bytes, t0 + 5ms);
        read.tick(t0 + 1s);
        return read;
    };
    auto reply = waited(5, "12345");
    EXPECT_EQ(std::make_pair(ReadReplyResult(reply, slot), slot),
              std::make_pair(std::optional('1'), std::string()));
    auto late = waited(5, "12");
    EXPECT_EQ(std::make_pair(ReadReplyResult(late, slot), slot),
              std::make_pair(std::optional<char>(), std::string("12")))
        << "the caller keeps the reply of the step before";
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
    // A device the user may not open: the same text first, then how to get the permission.
    port.denied = true;
    module.OpenComPort();
    EXPECT_EQ(op.log.back(), "tell: Halvane: Comm Port 17 in use or invalid\n" +
                                 std::string(ComPortModule::kPermissionHint));
    op.log.pop_back();
    port.denied = false;
    state.ComPort = 3;
    port.input = "stale";
    module.OpenComPort();
    EXPECT_EQ(port.opened, "/dev/pts/7");
    EXPECT_TRUE(port.input.empty()) << "opening drops what was waiting";
    module.OpenComPort();  // already open on this device: still one port, no message
    EXPECT_EQ(op.log.size(), 1u);
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

// The link's actions as a driver would carry them out: bytes sent, messages told, the rest in words.
struct WifiRig {
    WifiLink link;
    std::string sent;
    std::vector<std::string> told, done;
    explicit WifiRig(std::string port = "31689") {
        link.ServerIP = "169.254.10.1";
        link.ServerPort = std::move(port);
        link.setActionsReady([this] {
            for (const auto& a : link.takeActions()) {
                if (a.kind == WifiAction::Kind::Send) sent += a.bytes;
                if (a.kind == WifiAction::Kind::Tell) told.push_back(a.text);
                if (a.kind == WifiAction::Kind::Connect)
                    done.push_back(a.host + ":" + std::to_string(a.port));
                if (a.kind == WifiAction::Kind::Close) done.push_back("close");
            }
        });
    }
};

const std::string kFrame("\0\xF3\x05", 3);
const std::string kNotConnected = "Error: ethernet not connected.  Check settings.";

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
         [](WifiRig& r) { r.link.onState(TcpSocket::Closed, t0 + 100ms); }, "", "", {kNotConnected}},
    };
    // clang-format on
    for (const auto& c : cases) {
        WifiRig r;
        r.link.EthernetCommand(kFrame, t0);
        EXPECT_EQ(r.done, std::vector<std::string>{"169.254.10.1:31689"}) << c.name;
        EXPECT_EQ(r.link.nextDeadline(), t0 + WifiLink::kConnectBudget) << c.name;
        r.link.onState(TcpSocket::Connected, t0 + 20ms);
        EXPECT_EQ(r.link.nextDeadline(), t0 + 220ms) << c.name << ": nothing else wakes the link";
        c.at100ms(r);
        r.link.onTime(t0 + 219ms);
        EXPECT_EQ(r.sent, c.sentBy219ms) << c.name;
        r.link.onTime(t0 + 220ms);
        EXPECT_EQ(r.sent, c.sentBy220ms) << c.name;
        EXPECT_EQ(r.told, c.told) << c.name;
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
        r.link.EthernetCommand(kFrame, t0);
        r.link.EthernetCommand(kFrame, t0);  // a burst asks once
        std::vector<std::string> told{kNotConnected};
        if (c.connectsTo == 0)
            told.insert(told.begin(), "Server Port \"" + std::string(c.text) +
                                          "\" is not valid: use a whole number from 1 to 65535.");
        EXPECT_EQ(r.link.nextDeadline(), c.connectsTo == 0 ? t0 : t0 + WifiLink::kConnectBudget) << c.text;
        r.link.onTime(t0);
        EXPECT_EQ(r.told.size(), c.connectsTo == 0 ? 2u : 0u) << c.text << ": a refusal does not wait";
        r.link.onState(TcpSocket::Connecting, t0 + 1ms);
        r.link.onTime(t0 + WifiLink::kConnectBudget - 1ms);
        EXPECT_EQ(r.told.size(), c.connectsTo == 0 ? 2u : 0u) << c.text;
        r.link.onTime(t0 + WifiLink::kConnectBudget);
        EXPECT_EQ(r.told, told) << c.text << ": a plain time-out of the connect itself is silent";
        EXPECT_EQ(r.done, c.connectsTo == 0 ? std::vector<std::string>{}
                                            : std::vector{"169.254.10.1:" + std::to_string(c.connectsTo)})
            << c.text;
        EXPECT_EQ(r.sent, "") << c.text;
    }
}

TEST(WifiLinkEvents, TheHelloIsDroppedOnlyWhenItComesAloneEverythingIsLoggedAndAnErrorCloses) {
    WifiRig r;
    r.link.onData("before the connection");
    r.link.onState(TcpSocket::Connected, t0);
    r.link.onData("*KRV_CONN*");
    EXPECT_EQ(r.link.sock_GetData(), "");
    r.link.onData(std::string("\xEA\x07", 2));
    r.link.onData("*KRV_CONN*\xEA");
    EXPECT_EQ(r.link.sock_GetData(), "\xEA\x07*KRV_CONN*\xEA");
    EXPECT_EQ(r.link.log(), "*KRV_CONN*\r\n\xEA\x07\r\n*KRV_CONN*\xEA\r\n");
    r.link.onError(10054, "Connection reset by peer");
    EXPECT_EQ(r.told, std::vector<std::string>{"Socket Error 10054: Connection reset by peer"});
    r.link.onClosedByPeer();
    EXPECT_EQ(r.done, (std::vector<std::string>{"close", "close"}));
}

// The driver on a socket in memory: a frame the socket will not take (its connection went without a
// word) is no silence: the link connects again and the frame follows the hello.
TEST(WifiDriver, AFrameTheSocketRefusesConnectsAgainAndGoesAfterTheHello) {
    testing::FakeTcpSocket socket;
    testing::ScriptedOperator op;
    WifiLink link;
    link.ServerIP = "169.254.10.1";
    link.ServerPort = "31689";
    TimePoint now = t0;
    WifiDriver driver(link, socket, op, [&] { return now; });
    link.EthernetConnect(now);
    socket.become(TcpSocket::Connected);
    socket.receive(WifiLink::kHello);
    link.EthernetCommand(kFrame, now);
    EXPECT_EQ(socket.sent, kFrame);

    socket.current = TcpSocket::Closed;
    now += 1s;
    link.EthernetCommand(kFrame, now);
    EXPECT_EQ(std::make_pair(socket.connects, socket.current), std::make_pair(2, int(TcpSocket::Connecting)));
    socket.become(TcpSocket::Connected);
    socket.receive(WifiLink::kHello);
    EXPECT_EQ(socket.sent, kFrame + kFrame);
    socket.hangUp();
    EXPECT_EQ(link.state(), TcpSocket::Closed);
    socket.fail(10061, "Connection refused");
    EXPECT_EQ(op.log, std::vector<std::string>{"tell: Halvane: Socket Error 10061: Connection refused"});
    EXPECT_EQ(link.sock_GetData(), "");
}

TEST(WifiSetupWindow, ShowsStateWordsAndTheButtonDecidesTheClick) {
    const std::pair<int, const char*> words[] = {{7, "Connected"}, {0, "Closed"}, {6, "Connecting"},
                                                 {8, "Closing"},   {9, "Error"},  {3, "Unknown"}};
    for (const auto& [state, text] : words) EXPECT_STREQ(frmEthernetSetup::statusWords(state), text);
    EXPECT_EQ(std::string(frmEthernetSetup::buttonCaption(6)) + frmEthernetSetup::buttonCaption(9),
              "DisconnectConnect");

    testing::FakeTcpSocket socket;
    testing::ScriptedOperator op;
    WifiLink link;
    link.ServerIP = "169.254.10.1";
    link.ServerPort = "31689";
    WifiDriver driver(link, socket, op, [] { return t0; });
    testing::TempDir dir;
    frmEthernetSetup window(link, dir.file("hvn.cfg"));
    EXPECT_TRUE(window.lblEthernetStatus == "Closed" && window.serverFieldsEnabled);
    window.btnEthernetConnect_Click(t0);
    EXPECT_TRUE(window.busy());
    socket.become(TcpSocket::Connected);
    socket.receive("*KRV_CONN*");
    window.refreshLog();
    EXPECT_EQ(window.lblEthernetStatus + " " + window.txtbxEthernetData, "Connected *KRV_CONN*\r\n");
    EXPECT_EQ(link.sock_GetData(), "");

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
