#include "links/ethernet_setup.h"

#include "authoring/profile_file.h"
#include "links/wifi_link.h"

namespace halvane {

frmEthernetSetup::frmEthernetSetup(WifiLink& link, std::string configFile)
    : m_link(link), m_configFile(std::move(configFile)) {
    txtbxEthernetData = m_link.log();
    showState();
    serverFieldsEnabled = m_link.state() == TcpSocket::Closed;
}

std::string& frmEthernetSetup::txtbxServerIP() {
    return m_link.ServerIP;
}
std::string& frmEthernetSetup::txtbxServerPort() {
    return m_link.ServerPort;
}

const char* frmEthernetSetup::statusWords(int state) {
    switch (state) {
        case TcpSocket::Connected:
            return "Connected";
        case TcpSocket::Closed:
            return "Closed";
        case TcpSocket::Connecting:
            return "Connecting";
        case TcpSocket::Closing:
            return "Closing";
        case TcpSocket::Error:
            return "Error";
        default:
            return "Unknown";
    }
}

const char* frmEthernetSetup::buttonCaption(int state) {
    switch (state) {
        case TcpSocket::Closed:
        case TcpSocket::Closing:
        case TcpSocket::Error:
            return "Connect";
        default:
            return "Disconnect";
    }
}

void frmEthernetSetup::showState() {
    lblEthernetStatus = statusWords(m_link.state());
    btnEthernetConnect = buttonCaption(m_link.state());
}

void frmEthernetSetup::btnEthernetConnect_Click(TimePoint now) {
    if (m_busy) return;
    if (btnEthernetConnect == "Connect") {
        m_busy = true;
        showState();
        WifiLink& link = m_link;
        m_link.EthernetConnect(now, [this, &link, alive = std::weak_ptr<bool>(m_alive)] {
            // What came in on the way (the hello among it) is not for any reader.
            link.sock_ClearData();
            if (alive.expired()) return;
            m_busy = false;
            showState();
            refreshLog();
        });
        return;
    }
    if (btnEthernetConnect == "Disconnect") m_link.EthernetDisconnect();
    showState();
}

void frmEthernetSetup::refreshLog() {
    txtbxEthernetData = m_link.log();
}

bool frmEthernetSetup::Unload() {
    const bool ip = WriteIni(m_configFile, "Settings", "EthernetIP", m_link.ServerIP);
    const bool port = WriteIni(m_configFile, "Settings", "EthernetPort", m_link.ServerPort);
    return ip && port;
}

}  // namespace halvane
