// The main window's port search, also reached from the hit score window's Configure menu, and the guard of
// the operations that take the shared port over.

#include "authoring/about_box.h"
#include "console/main_window.h"
#include "links/com_port.h"
#include "links/port_search.h"
#include "scores/hit_scores.h"

namespace halvane {

bool Form1::sharedPortBusy(const std::string& what) {
    if (!m_hitScores || !m_hitScores->busy()) return false;
    m_operator.tell(
        "The hit score window is reading scores; wait for it to finish, or press Esc there, before " + what +
            ".",
        kAppTitle);
    return true;
}

void Form1::M_ComPort() {
    // The search closes the shared port, which a download in the hit score window may be using.
    if (!m_comPort || sharedPortBusy("searching the ports")) return;
    frmCommPorts window(m_state, *m_comPort, m_newPort, m_operator);
    window.Load(SteadyClock::now());
    m_operator.show(window);
}

}  // namespace halvane
