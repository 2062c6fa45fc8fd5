// The serial line's readers and port handling, and the Wi-Fi link with its window, on a virtual clock.

#include <gtest/gtest.h>

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

struct Wifi : ::testing::Test {
    testing::FakeTcpSocket socket;
    testing::ScriptedOperator op;
    WifiLink link{socket, op};
    void SetUp() override {
        link.ServerIP = "169.254.10.1";
        link.ServerPort = "31689";
    }
};

TEST_F(Wifi, FramesWaitForTheConnectionAndABurstThatCannotConnectIsToldOnce) {
    link.EthernetCommand(std::string("\0\xF3\x05", 3), t0);
    link.EthernetCommand(std::string("\0\xF0\x06", 3), t0 + 1ms);
    EXPECT_EQ(socket.connects, 1);
    EXPECT_EQ(socket.host + ":" + std::to_string(socket.port), "169.254.10.1:31689");
    socket.current = TcpSocket::Connected;
    link.poll(t0 + 20ms);
    EXPECT_EQ(socket.sent, "") << "a fresh connection's hello comes before any frame";
    link.onData(WifiLink::kHello);
    EXPECT_EQ(socket.sent, std::string("\0\xF3\x05\0\xF0\x06", 6));

    socket.current = TcpSocket::Closed;
    socket.sent.clear();
    for (int i = 0; i < 3; ++i) link.EthernetCommand(std::string("\0\xFA\x01", 3), t0 + 1s);
    link.poll(t0 + 5999ms);
    EXPECT_TRUE(op.log.empty()) << "still connecting";
    link.poll(t0 + 6s);
    EXPECT_EQ(op.log,
              std::vector<std::string>{"tell: Halvane: Error: ethernet not connected.  Check settings."});
    EXPECT_TRUE(socket.sent.empty());
}

TEST_F(Wifi, APortTextThatIsNoNumberIsToldAfterTheWaitAndTheOldPortIsTried) {
    link.EthernetConnect(t0);
    link.poll(t0 + 5s);
    EXPECT_TRUE(op.log.empty()) << "a plain time-out of a connect is silent";
    link.ServerPort = "31x";
    link.EthernetConnect(t0 + 6s);
    EXPECT_EQ(socket.connects, 2);
    EXPECT_EQ(socket.port, 31689);
    link.poll(t0 + 11s);
    EXPECT_EQ(op.log, std::vector<std::string>{"tell: Halvane: Ethernet error: Not connected"});
}

TEST_F(Wifi, TheHelloIsDroppedOnlyWhenItComesAloneAndEverythingIsLogged) {
    socket.current = TcpSocket::Connected;
    link.onData("*KRV_CONN*");
    EXPECT_EQ(link.sock_GetData(), "");
    link.onData(std::string("\xEA\x07", 2));
    link.onData("*KRV_CONN*\xEA");
    EXPECT_EQ(link.sock_GetData(), "\xEA\x07*KRV_CONN*\xEA");
    EXPECT_EQ(link.log(), "*KRV_CONN*\r\n\xEA\x07\r\n*KRV_CONN*\xEA\r\n");
    link.onError(10053, "Connection aborted");
    EXPECT_EQ(op.log.back(), "tell: Halvane: Socket Error 10053: Connection aborted");
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
