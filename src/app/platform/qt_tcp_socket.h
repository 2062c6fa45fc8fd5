#pragma once
// The Wi-Fi link's socket over QTcpSocket: states in the console's numbering, and the socket's events
// and the link's deadline turned into calls on the WifiLink.

#include <QObject>
#include <QTcpSocket>
#include <QTimer>

#include "links/tcp_socket.h"

namespace halvane {
class WifiLink;
}

namespace halvane::app {

class QtTcpSocket : public QObject, public TcpSocket {
    Q_OBJECT
  public:
    explicit QtTcpSocket(QObject* parent = nullptr);
    ~QtTcpSocket() override;
    // The link this socket reports to; its deadlines are kept from then on. The link must not
    // outlive the socket.
    void attach(WifiLink& link);

    int state() const override;
    void connectTo(const std::string& host, std::uint16_t port) override;
    void close() override;
    void send(std::string_view bytes) override;

    // The socket error numbers the operator sees, in the numbering of the classic socket library.
    static int errorNumber(QAbstractSocket::SocketError error);

  signals:
    // Data came in (the Wi-Fi window refreshes its log).
    void dataArrived();

  private:
    void pollLink();
    // One single-shot timer, at the link's earliest deadline.
    void armDeadline();
    QTcpSocket m_socket;
    QTimer m_deadline;
    WifiLink* m_link = nullptr;
    bool m_failed = false;
};

}  // namespace halvane::app
