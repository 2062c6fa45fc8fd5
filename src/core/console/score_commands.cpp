// The commands of the main window that reach the targets' own settings: LM Setup.

#include "console/main_window.h"
#include "links/com_port.h"
#include "scores/target_setup.h"

namespace halvane {

// The setup window's port is the same line as the shared one, which is closed first.
void Form1::M_LM_SETUP() {
    if (m_comPort) m_comPort->CloseComPort();
    std::unique_ptr<SerialPort> port = m_newPort ? m_newPort() : nullptr;
    if (!port) return;
    const PortNames names = m_comPort ? m_comPort->names() : PortNames{};
    frmLM_Setup window(m_state, *port, names, m_wifi, m_operator);
    window.Load();
    m_operator.show(window);
    window.Unload();
}

}  // namespace halvane
