#pragma once
// The "Wi-Fi Setup" window (frmEthernetSetup): the server fields, the state of the link in words, the
// connect button and the log of what came in.

#include <memory>
#include <string>

#include "authoring/window.h"
#include "links/timed_read.h"

namespace halvane {

class WifiLink;

class frmEthernetSetup : public Window {
  public:
    // Loads the window: the log, the state words, and the server fields enabled only while closed.
    frmEthernetSetup(WifiLink& link, std::string configFile);

    static constexpr const char* Caption = "Wi-Fi Setup";

    std::string lblEthernetStatus;
    std::string btnEthernetConnect;  // its caption, which decides what the next click does
    bool serverFieldsEnabled = true;
    std::string txtbxEthernetData;

    // The server fields are the link's own, so they last for the whole run.
    std::string& txtbxServerIP();
    std::string& txtbxServerPort();

    void btnEthernetConnect_Click(TimePoint now);
    // A connect started by the button is under way; the button waits for it.
    bool busy() const { return m_busy; }
    // Stores the server fields in hvn.cfg; false when the file could not be written.
    bool Unload();
    // The log as it now stands, for a window that stays open.
    void refreshLog();

    // The state words of a socket state.
    static const char* statusWords(int state);
    static const char* buttonCaption(int state);

  private:
    void showState();

    WifiLink& m_link;
    std::string m_configFile;
    bool m_busy = false;
    // Lets a connect that ends after the window has closed know it.
    std::shared_ptr<bool> m_alive = std::make_shared<bool>(true);
};

}  // namespace halvane
