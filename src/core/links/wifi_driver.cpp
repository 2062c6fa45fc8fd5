#include "links/wifi_driver.h"

#include "authoring/about_box.h"
#include "authoring/operator.h"

namespace halvane {

WifiDriver::WifiDriver(WifiLink& link, TcpSocket& socket, Operator& op, std::function<TimePoint()> clock)
    : m_link(link), m_socket(socket), m_operator(op), m_clock(std::move(clock)) {
    m_link.setActionsReady([this] { carryOut(); });
    m_socket.listen({[this](std::string_view bytes) {
                         sync();
                         m_link.onData(bytes);
                     },
                     [this](const std::string&) {
                         m_link.onClosedByPeer();
                         sync();
                     }});
    // The error is told before the state it leaves: the operator hears the cause before what it cost.
    m_socket.watch({[this] { sync(); },
                    [this](int number, const std::string& description) {
                        m_link.onError(number, description);
                        sync();
                    }});
}

WifiDriver::~WifiDriver() {
    m_link.setActionsReady({});
    m_socket.stopListening();
    m_socket.watch({});
}

void WifiDriver::sync() {
    const int state = m_socket.state();
    if (state != m_link.state()) m_link.onState(state, m_clock());
}

void WifiDriver::carryOut() {
    for (auto& action : m_link.takeActions()) {
        switch (action.kind) {
            case WifiAction::Kind::Connect:
                m_socket.connectTo(action.host, action.port);
                break;
            case WifiAction::Kind::Send:
                if (!m_socket.write(action.bytes)) {
                    sync();
                    m_link.onSendFailed(action.bytes, m_clock());
                }
                break;
            case WifiAction::Kind::Close:
                m_socket.close();
                break;
            case WifiAction::Kind::Tell:
                if (action.critical)
                    m_operator.critical(action.text, kAppTitle);
                else
                    m_operator.tell(action.text, kAppTitle);
                break;
        }
        sync();
    }
}

}  // namespace halvane
