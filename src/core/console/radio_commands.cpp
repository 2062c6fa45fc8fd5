// The main window's Radio Setup command.

#include "console/main_window.h"
#include "links/com_port.h"
#include "links/radio_setup.h"

namespace halvane {

// Modeless and kept for the run: asked again, the window comes to the front as it stands; after its
// Close it loads afresh.
void Form1::M_RadioSetup() {
    if (!m_comPort) return;
    if (!m_radioSetup) {
        m_radioSetup = std::make_unique<frmRadioSetup>(m_state, *m_comPort, m_operator);
        m_radioSetup->sharedPortBusy = [this](const std::string& what) { return sharedPortBusy(what); };
    }
    if (m_radioSetup->closed()) m_radioSetup->Load();
    m_operator.show(*m_radioSetup, Modality::Modeless);
}

}  // namespace halvane
