// The range commands of the main window: Run.

#include "console/main_window.h"
#include "links/com_port.h"
#include "links/wifi_link.h"
#include "range/range_running.h"

namespace halvane {

// The run window plays the grid as it stands; the grid cannot change under it, since the window is
// modal. Its port is its own, opened by Connect and closed when it unloads.
void Form1::M_Run() {
    if (!m_grid || !item("M_Run").enabled) return;
    std::unique_ptr<SerialPort> port = m_newPort ? m_newPort() : nullptr;
    if (!port) return;
    const PortNames names = m_comPort ? m_comPort->names() : PortNames{};
    WifiLink* wifi = m_wifi;
    frmRangeRunning window(
        m_state, *m_grid, *port, names,
        [wifi](std::string_view frame, TimePoint now) {
            if (wifi) wifi->EthernetCommand(frame, now);
        },
        m_operator, m_positions);
    window.Load();
    m_operator.show(window);
    window.Unload();
}

}  // namespace halvane
