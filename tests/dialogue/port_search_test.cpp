// The port search against simulated devices on sixteen virtual ports: what it finds, what it offers and
// where it leaves ComPort, what each device hears, and that asking all ports at once comes to exactly
// what asking them one by one in rising order comes to, in a fraction of the time.

#include <gtest/gtest.h>

#include <map>

#include "../core/scripted_operator.h"
#include "../core/temp_dir.h"
#include "authoring/profile_file.h"
#include "links/com_port.h"
#include "links/port_search.h"
#include "sim/devices.h"
#include "sim/range.h"

namespace halvane::testing {
namespace {

using namespace std::chrono_literals;

// Sixteen numbered sockets on one virtual clock: a socket is empty (the port is absent), holds a line
// with nothing behind it, or a simulated device. A port can be held by one opener at a time.
class PortBench {
  public:
    class BenchPort;
    struct Socket {
        bool present = false;
        bool refuses = false;  // opens once, but not again
        bool denied = false;   // this user may not open it
        int opens = 0;
        std::unique_ptr<sim::Device> device;
        std::string heard;  // every byte the device heard
        BenchPort* holder = nullptr;
    };

    class BenchPort : public SerialPort {
      public:
        explicit BenchPort(PortBench& bench) : m_bench(bench) {}
        ~BenchPort() override { close(); }
        bool open(const std::string& name) override {
            Socket* socket = m_bench.socket(name);
            if (m_socket || !socket || !socket->present || socket->holder) return false;
            m_denied = socket && socket->denied;
            if (m_denied || (socket->refuses && socket->opens > 0)) return false;
            m_socket = socket;
            socket->holder = this;
            ++socket->opens;
            return true;
        }
        void close() override {
            if (m_socket) m_socket->holder = nullptr;
            m_socket = nullptr;
        }
        bool isOpen() const override { return m_socket != nullptr; }
        std::string deviceName() const override { return {}; }
        bool write(std::string_view bytes) override {
            if (!m_socket) return false;
            m_socket->heard += bytes;
            if (m_socket->device) m_socket->device->receive(bytes, m_bench.now);
            return true;
        }
        void dropInput() override {}
        void dropOutput() override {}
        void setRts(bool) override {}
        void setDtr(bool) override {}
        bool deniedToUser() const override { return m_denied; }
        using Link::deliver;

      private:
        PortBench& m_bench;
        Socket* m_socket = nullptr;
        bool m_denied = false;
    };

    PortBench() {
        for (int port = kFirstPort; port <= kLastPort; ++port)
            names.setDevice(port, "bench" + std::to_string(port));
    }
    Socket* socket(const std::string& name) {
        for (int port = kFirstPort; port <= kLastPort; ++port)
            if (names.device(port) == name) return &sockets[static_cast<std::size_t>(port)];
        return nullptr;
    }
    void line(int port) { sockets[static_cast<std::size_t>(port)].present = true; }
    void plug(int port, std::unique_ptr<sim::Device> device) {
        line(port);
        sockets[static_cast<std::size_t>(port)].device = std::move(device);
    }
    std::unique_ptr<SerialPort> newPort() { return std::make_unique<BenchPort>(*this); }

    // Runs the window's clock until its search is over, delivering what the devices send as it falls due.
    void search(frmCommPorts& window) {
        const TimePoint start = now;
        while (window.searching() && now - start < 60s) {
            std::optional<TimePoint> next = window.nextDeadline();
            for (auto& socket : sockets)
                if (socket.device)
                    if (const auto due = socket.device->nextDue(); due && (!next || *due < *next)) next = due;
            now = std::max(now, next.value_or(now + 100ms));
            for (auto& socket : sockets) {
                if (!socket.device) continue;
                for (const std::string& chunk : socket.device->takeDue(now))
                    if (socket.holder) socket.holder->deliver(chunk);
            }
            if (const auto due = window.nextDeadline(); due && *due <= now) window.onTime(now);
        }
    }

    PortNames names;
    std::array<Socket, kLastPort + 1> sockets;
    TimePoint now{std::chrono::hours(1)};
};

// One search on a bench, as the window runs it with `atOnce` ports asked at the same time.
struct Search {
    Search(PortBench& bench, SharedState& state, int atOnce)
        : shared(bench.newPort()),
          comPort(state, *shared, bench.names, op),
          window(
              state, comPort, [&bench] { return bench.newPort(); }, op, [&bench] { return bench.now; },
              atOnce) {
        loadedAt = bench.now;
        window.Load(bench.now);
        bench.search(window);
        took = bench.now - loadedAt;
    }
    ScriptedOperator op;
    std::unique_ptr<SerialPort> shared;
    ComPortModule comPort;
    frmCommPorts window;
    TimePoint loadedAt;
    std::chrono::nanoseconds took{};
};

// Everything an operator or a device could tell of a search.
std::string outcome(PortBench& bench, const SharedState& state, const frmCommPorts& window,
                    const ScriptedOperator& op) {
    std::string out = "ver=" + std::to_string(state.PortVer) + " ok=" + std::to_string(state.PortOk) +
                      " com=" + std::to_string(state.ComPort) + " label='" + window.Label1() +
                      "' selected=" + std::to_string(window.selected()) + " enabled=";
    for (int port = kFirstPort; port <= kLastPort; ++port) out += window.OptionEnabled(port) ? '1' : '0';
    for (int port = kFirstPort; port <= kLastPort; ++port) {
        const auto& socket = bench.sockets[static_cast<std::size_t>(port)];
        if (!socket.heard.empty()) out += " heard" + std::to_string(port) + "=" + socket.heard;
        if (socket.holder) out += " held" + std::to_string(port);
    }
    for (const std::string& line : op.log) out += " | " + line;
    return out;
}

using BenchSetup = std::function<void(PortBench&, sim::Range&)>;

// The outcome of one search with `atOnce` ports at a time, starting from ComPort `comPort`.
std::string searchOutcome(const BenchSetup& setup, std::int16_t comPort, int atOnce,
                          std::chrono::nanoseconds* took = nullptr) {
    sim::Range range(4);
    PortBench bench;
    setup(bench, range);
    SharedState state;
    state.ComPort = comPort;
    Search search(bench, state, atOnce);
    if (took) *took = search.took;
    return outcome(bench, state, search.window, search.op);
}

TEST(PortSearch, FindsTheDevicesAndAskingAllAtOnceComesToWhatAskingOneByOneDoes) {
    const auto transmitter = [](int port) {
        return [port](PortBench& b, sim::Range& r) { b.plug(port, sim::makeTransmitter(r, {})); };
    };
    const auto radio = [](int port) {
        return [port](PortBench& b, sim::Range& r) { b.plug(port, sim::makeRadioModem(r, {})); };
    };
    const auto lines = [](std::vector<int> ports) {
        return [ports](PortBench& b, sim::Range&) {
            for (const int port : ports) b.line(port);
        };
    };
    const auto all = [](std::vector<BenchSetup> parts) {
        return [parts](PortBench& b, sim::Range& r) {
            for (const auto& part : parts) part(b, r);
        };
    };
    const struct {
        const char* what;
        BenchSetup setup;
        std::int16_t comPort;
        std::string expected;
    } cases[] = {
        {"a radio and a transmitter: the radio is named and selected",
         all({lines({1, 2}), transmitter(3), radio(6)}), 1,
         "ver=3 ok=6 com=3 label='Radio Found on Com Port  6' selected=6 enabled=1110010000000000 "
         "heard1=?\r\n+++ heard2=?\r\n+++ heard3=?\r\n+++ heard6=?\r\n+++ATCN\r\n"},
        {"two transmitters: the higher wins, named but ComPort selected",
         all({transmitter(2), transmitter(9)}), 4,
         "ver=9 ok=0 com=2 label='LMC Found on Com Port  9' selected=2 enabled=0100000010000000 "
         "heard2=?\r\n+++ heard9=?\r\n+++"},
        {"two radios: the higher wins", all({radio(4), radio(5), lines({7})}), 2,
         "ver=0 ok=5 com=5 label='Radio Found on Com Port  5' selected=5 enabled=0001101000000000 "
         "heard4=?\r\n+++ATCN\r\n heard5=?\r\n+++ATCN\r\n heard7=?\r\n+++"},
        {"nothing answers", lines({2, 16}), 7,
         "ver=0 ok=0 com=2 label='' selected=2 enabled=0100000000000001 heard2=?\r\n+++ heard16=?\r\n+++"},
        {"no port at all: ComPort stays, absent and disabled", lines({}), 5,
         "ver=0 ok=0 com=5 label='' selected=5 enabled=0000000000000000"},
        {"ComPort 0 with one port: nothing selected", lines({3}), 0,
         "ver=0 ok=0 com=0 label='' selected=0 enabled=0010000000000000 heard3=?\r\n+++"},
        {"a port that opens for its first question but not for the second is told",
         [](PortBench& b, sim::Range& r) {
             b.plug(2, sim::makeRadioModem(r, {}));
             b.line(8);
             b.sockets[8].refuses = true;
         },
         1,
         "ver=0 ok=2 com=2 label='Radio Found on Com Port  2' selected=2 enabled=0100000100000000 "
         "heard2=?\r\n+++ATCN\r\n heard8=?\r\n | tell: Halvane: Comm Port 8 in use or invalid"},
        {"a port this user may not open is absent, and the operator is told how to get the permission",
         [](PortBench& b, sim::Range&) {
             b.line(4);
             b.sockets[4].denied = true;
         },
         1,
         "ver=0 ok=0 com=1 label='' selected=1 enabled=0000000000000000 | tell: Halvane: Comm Port 4 in use "
         "or "
         "invalid\n" +
             std::string(ComPortModule::kPermissionHint)},
    };
    for (const auto& c : cases) {
        const std::string oneByOne = searchOutcome(c.setup, c.comPort, 1);
        EXPECT_EQ(oneByOne, c.expected) << c.what;
        EXPECT_EQ(searchOutcome(c.setup, c.comPort, kLastPort), oneByOne) << c.what;
    }
}

TEST(PortSearch, SixteenSilentPortsTakeUnderASecondAndAHalfInsteadOfTwentyPointEight) {
    const BenchSetup silent = [](PortBench& b, sim::Range&) {
        for (int port = kFirstPort; port <= kLastPort; ++port) b.line(port);
    };
    std::chrono::nanoseconds oneByOne{}, atOnce{};
    searchOutcome(silent, 1, 1, &oneByOne);
    searchOutcome(silent, 1, kLastPort, &atOnce);
    // After the half second of Timer1: per port 0.1 + 0.1 s and 0.1 + 1.0 s, one by one or overlapped.
    EXPECT_EQ(oneByOne, frmCommPorts::kTimer1 + 16 * 1300ms);
    EXPECT_EQ(atOnce, frmCommPorts::kTimer1 + 1300ms);
}

TEST(PortSearch, FindingsOutliveTheSearchAndOkStoresTheChoiceWithItsBlank) {
    TempDir dir;
    sim::Range range(4);
    PortBench bench;
    bench.plug(5, sim::makeRadioModem(range, {}));
    bench.line(7);
    SharedState state;
    state.ComPort = 1;
    state.ConfigFile = (dir.path() / "hvn.cfg").string();
    {
        Search first(bench, state, kLastPort);
        first.window.Option1_Click(3);  // absent: cannot be chosen
        EXPECT_EQ(first.window.selected(), 5);
        first.window.OKButton_Click();
        EXPECT_TRUE(first.window.closed());
        EXPECT_EQ(state.ComPort, 5);
        EXPECT_EQ(readProfileFile(state.ConfigFile), "[Settings]\r\nComPort= 5\r\n");
    }
    // The radio unplugged: the second search still names it, and its option stands selected but disabled.
    bench.sockets[5] = {};
    Search second(bench, state, kLastPort);
    EXPECT_EQ(second.window.Label1(), "Radio Found on Com Port  5");
    EXPECT_EQ(second.window.selected(), 5);
    EXPECT_FALSE(second.window.OptionEnabled(5));
    second.window.Option1_Click(7);
    second.window.CancelButton_Click();
    EXPECT_TRUE(second.window.closed());
    EXPECT_EQ(state.ComPort, 5);
    EXPECT_EQ(readProfileFile(state.ConfigFile), "[Settings]\r\nComPort= 5\r\n");
}

TEST(PortSearch, OkWithNothingSelectedKeepsTheWindowAndTheFile) {
    TempDir dir;
    PortBench bench;
    bench.line(2);
    SharedState state;
    state.ComPort = 0;
    state.ConfigFile = (dir.path() / "hvn.cfg").string();
    Search search(bench, state, kLastPort);
    search.window.OKButton_Click();
    EXPECT_FALSE(search.window.closed());
    EXPECT_FALSE(std::filesystem::exists(state.ConfigFile));
    EXPECT_EQ(frmCommPorts::OptionCaption(15) + "|" + frmCommPorts::OptionCaption(14), "Com15|Com 14");
}

}  // namespace
}  // namespace halvane::testing
