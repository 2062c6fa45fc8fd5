#pragma once
// The Wi-Fi link's socket over QTcpSocket: states in the console's numbering, and QTcpSocket's signals
// turned into the socket's events: bytes, state, error, and the device hanging up as a lost link.

#include <QObject>
#include <QTcpSocket>

#include "links/tcp_socket.h"

namespace halvane::app {

class QtTcpSocket : public QObject, public TcpSocket {
  public:
    explicit QtTcpSocket(QObject* parent = nullptr);
    ~QtTcpSocket() override;

    int state() const override;
    void connectTo(const std::string& host, std::uint16_t port) override;
    void close() override;
    bool write(std::string_view bytes) override;
    void dropInput() override;

    // The socket error numbers the operator sees, in the numbering of the classic socket library.
    static int errorNumber(QAbstractSocket::SocketError error);

  private:
    QTcpSocket m_socket;
    bool m_failed = false;
};

}  // namespace halvane::app
