// The range commands of the main window: Run and Live Mode.

#include "console/main_window.h"
#include "links/com_port.h"
#include "links/wifi_link.h"
#include "range/live_mode.h"
#include "range/range_running.h"

namespace halvane {

namespace {
// Shows a range window modally with the Wi-Fi link's frames and replies routed to it, and unloads it.
// Its port is its own, closed when it unloads.
void showRangeWindow(Operator& op, RangeWindow& window, WifiLink* wifi) {
    struct Receiving {
        WifiLink* wifi;
        ~Receiving() {
            if (wifi) wifi->setReceiver({});
        }
    } receiving{wifi};
    if (wifi) {
        window.setWifiLink(wifi);
        wifi->setReceiver([&window](std::string_view chunk) { window.onSocketData(chunk); });
    }
    window.Load();
    op.show(window);
    window.Unload();
}

RangePort::WifiSend wifiSend(WifiLink* wifi) {
    return [wifi](std::string_view frame, TimePoint now) {
        if (wifi) wifi->EthernetCommand(frame, now);
    };
}
}  // namespace

// The run window plays the grid as it stands; the grid cannot change under it, since the window is
// modal.
void Form1::M_Run() {
    if (!m_grid || !item("M_Run").enabled) return;
    std::unique_ptr<SerialPort> port = m_newPort ? m_newPort() : nullptr;
    if (!port) return;
    const PortNames names = m_comPort ? m_comPort->names() : PortNames{};
    frmRangeRunning window(m_state, *m_grid, *port, names, wifiSend(m_wifi), m_operator, m_positions);
    showRangeWindow(m_operator, window, m_wifi);
}

void Form1::M_LiveMode() {
    std::unique_ptr<SerialPort> port = m_newPort ? m_newPort() : nullptr;
    if (!port) return;
    const PortNames names = m_comPort ? m_comPort->names() : PortNames{};
    frmLiveMode window(m_state, *port, names, wifiSend(m_wifi), m_operator, m_positions);
    showRangeWindow(m_operator, window, m_wifi);
}

}  // namespace halvane
