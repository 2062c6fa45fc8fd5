// The commands of the main window for the targets' scores and settings: Hit Scores and LM Setup.

#include "console/main_window.h"
#include "links/com_port.h"
#include "links/radio_setup.h"
#include "scores/hit_scores.h"
#include "scores/target_setup.h"

namespace halvane {

Form1::~Form1() = default;

// Modeless: the window stays up beside the main window; asked again, it comes to the front.
void Form1::M_HitScores() {
    if (!m_hitScores) {
        m_hitScores =
            std::make_unique<FrmHitScores>(m_state, m_comPort, m_wifi, m_operator, m_workbooks, m_printer);
        m_hitScores->Load();
        m_hitScores->portSearch = [this] { run("M_ComPort"); };
    }
    m_operator.show(*m_hitScores, Modality::Modeless);
}

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
