// Any replies, at any times, on any of the sixteen lines, to the port search and to the radio setup's
// progress window, and lines that go away at any moment. The search must end with every port it
// opened closed; the progress window must end within its three seconds with the port closed and
// ComPort given back. The input is read as steps: one byte naming the line (its low four bits; 0xFF
// takes that line away), one byte of time to let pass (in 10 ms), one byte of length, and that many
// bytes of reply.

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "authoring/operator.h"
#include "links/com_port.h"
#include "links/port_search.h"
#include "links/radio_setup.h"
#include "links/sending_radio.h"

using namespace halvane;

namespace {

// Sixteen lines, each with at most one port open on it.
class FuzzPort;
FuzzPort* g_open[kLastPort + 1];

int lineOf(const std::string& device) {
    return device.size() > 4 ? std::atoi(device.c_str() + 4) : 0;  // "fuzz7"
}

class FuzzPort : public SerialPort {
  public:
    ~FuzzPort() override { close(); }
    bool open(const std::string& device) override {
        const int line = lineOf(device);
        if (m_line || line < kFirstPort || line > kLastPort || g_open[line]) return false;
        g_open[m_line = line] = this;
        clearLost();
        return true;
    }
    void close() override {
        if (m_line) g_open[m_line] = nullptr;
        m_line = 0;
    }
    bool isOpen() const override { return m_line != 0; }
    std::string deviceName() const override { return m_line ? "fuzz" + std::to_string(m_line) : ""; }
    bool write(std::string_view) override { return m_line != 0; }
    void dropInput() override {}
    void dropOutput() override {}
    void setRts(bool) override {}
    void setDtr(bool) override {}
    void hear(std::string_view bytes) { deliver(bytes); }
    void pull() {
        close();
        reportLost("pulled");
    }

  private:
    int m_line = 0;
};

// Runs a machine on the input's steps until `done`; aborts when it outlives `limit`.
template <class Machine, class Done>
void drive(Machine& machine, std::string_view& data, TimePoint& now, Done done,
           std::chrono::milliseconds limit) {
    const TimePoint start = now;
    while (!done()) {
        if (now - start > limit) std::abort();
        if (data.size() >= 3) {
            const auto line = static_cast<unsigned char>(data[0]);
            now += std::chrono::milliseconds(10 * static_cast<unsigned char>(data[1]));
            const std::size_t length =
                std::min<std::size_t>(static_cast<unsigned char>(data[2]), data.size() - 3);
            FuzzPort* port = g_open[(line & 15) + 1];
            if (port && line == 0xFF)
                port->pull();
            else if (port)
                port->hear(data.substr(3, length));
            data.remove_prefix(3 + length);
        } else {
            now += std::chrono::milliseconds(50);
        }
        if (const auto due = machine.nextDeadline(); due && *due <= now) machine.onTime(now);
    }
}

class FuzzOperator : public Operator {
  public:
    std::string_view* data = nullptr;
    TimePoint* now = nullptr;
    void tell(const std::string&, const std::string&) override {}
    Answer ask(const std::string&, const std::string&, Buttons) override { return Answer::Ok; }
    std::optional<std::string> inputBox(const std::string&, const std::string&, const std::string&) override {
        return std::nullopt;
    }
    std::optional<ChosenFile> chooseOpenFile(const FileDialogSetup&) override { return std::nullopt; }
    std::optional<ChosenFile> chooseSaveFile(const FileDialogSetup&) override { return std::nullopt; }
    void openDocument(const std::string&) override {}
    std::string showPopup(const std::string&, const std::vector<PopupItem>&) override { return {}; }
    void show(Window& window, Modality) override {
        auto* sending = dynamic_cast<frmSendingRadio*>(&window);
        if (!sending) return;
        // Three seconds of ticks and the settle; a late reply's wait may not hold the window longer.
        drive(
            *sending, *data, *now, [sending] { return sending->closed(); }, std::chrono::milliseconds(3200));
    }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    std::string_view data(reinterpret_cast<const char*>(bytes), size);
    TimePoint now{std::chrono::hours(1)};
    FuzzOperator op;
    op.data = &data;
    op.now = &now;
    SharedState state;
    state.ComPort = 3;
    state.RadioUSB = true;
    PortNames names;
    for (int line = kFirstPort; line <= kLastPort; ++line)
        names.setDevice(line, "fuzz" + std::to_string(line));
    FuzzPort shared;
    ComPortModule comPort(state, shared, names, op);

    {
        frmCommPorts search(
            state, comPort, [] { return std::make_unique<FuzzPort>(); }, op, [&now] { return now; });
        search.Load(now);
        drive(
            search, data, now, [&search] { return !search.searching(); }, std::chrono::seconds(30));
        for (int line = kFirstPort; line <= kLastPort; ++line)
            if (g_open[line]) std::abort();  // the search leaves every port closed
    }

    const std::int16_t before = state.ComPort;
    frmRadioSetup setup(state, comPort, op, [&now] { return now; });
    setup.Load();
    const bool usb = !data.empty() && (data[0] & 1);
    if (usb) {
        setup.CmbRadio = frmRadioSetup::kUSB;
        setup.CmbRadio_Click();
    }
    setup.txtLMSN = "1875";
    setup.cmbComPort = std::to_string(1 + (data.empty() ? 0 : static_cast<unsigned char>(data[0]) % 16));
    if (!data.empty() && (data[0] & 2))
        setup.Command1_Click();
    else
        setup.Command3_Click();
    if (shared.isOpen() || state.ComPort != before) std::abort();
    return 0;
}
