// The main window's port search, also reached from the hit score window's Configure menu.

#include "authoring/about_box.h"
#include "console/main_window.h"
#include "links/com_port.h"
#include "links/port_search.h"
#include "scores/hit_scores.h"

namespace halvane {

void Form1::M_ComPort() {
    if (!m_comPort) return;
    // The search closes the shared port, which a download in the hit score window may be using.
    if (m_hitScores && m_hitScores->busy()) {
        m_operator.tell(
            "The hit score window is reading scores; wait for it to finish, or press Esc there, "
            "before searching the ports.",
            kAppTitle);
        return;
    }
    frmCommPorts window(m_state, *m_comPort, m_newPort, m_operator);
    window.Load(SteadyClock::now());
    m_operator.show(window);
}

}  // namespace halvane
