#include "platform/qt_tcp_socket.h"

namespace halvane::app {

QtTcpSocket::QtTcpSocket(QObject* parent) : QObject(parent) {
    connect(&m_socket, &QTcpSocket::stateChanged, this, [this] { stateChanged(); });
    connect(&m_socket, &QTcpSocket::readyRead, this, [this] {
        const QByteArray chunk = m_socket.readAll();
        deliver({chunk.constData(), static_cast<std::size_t>(chunk.size())});
    });
    connect(&m_socket, &QTcpSocket::errorOccurred, this, [this](QAbstractSocket::SocketError error) {
        if (error == QAbstractSocket::RemoteHostClosedError) {
            // The device hung up in an orderly way: not a fault. The next frame finds the link closed.
            reportLost("the device closed the connection");
            return;
        }
        m_failed = true;
        failed(errorNumber(error), m_socket.errorString().toStdString());
    });
}

QtTcpSocket::~QtTcpSocket() {
    // The socket reports its closing while it goes; nothing may hear it by then.
    m_socket.disconnect(this);
}

int QtTcpSocket::errorNumber(QAbstractSocket::SocketError error) {
    switch (error) {
        case QAbstractSocket::ConnectionRefusedError:
            return 10061;
        case QAbstractSocket::HostNotFoundError:
            return 11001;
        case QAbstractSocket::SocketTimeoutError:
            return 10060;
        case QAbstractSocket::NetworkError:
            return 10050;
        case QAbstractSocket::SocketAccessError:
            return 10013;
        case QAbstractSocket::SocketResourceError:
            return 10055;
        case QAbstractSocket::AddressInUseError:
            return 10048;
        default:
            return 10000 + static_cast<int>(error);
    }
}

int QtTcpSocket::state() const {
    switch (m_socket.state()) {
        case QAbstractSocket::ConnectedState:
            return Connected;
        case QAbstractSocket::HostLookupState:
        case QAbstractSocket::ConnectingState:
            return Connecting;
        case QAbstractSocket::ClosingState:
            return Closing;
        case QAbstractSocket::UnconnectedState:
            return m_failed ? Error : Closed;
        default:
            return -1;
    }
}

void QtTcpSocket::connectTo(const std::string& host, std::uint16_t port) {
    m_failed = false;
    clearLost();
    m_socket.abort();
    m_socket.connectToHost(QString::fromStdString(host), port);
    m_socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
}

void QtTcpSocket::close() {
    m_failed = false;
    m_socket.abort();
}

bool QtTcpSocket::write(std::string_view bytes) {
    if (m_socket.state() != QAbstractSocket::ConnectedState) return false;
    return m_socket.write(bytes.data(), static_cast<qint64>(bytes.size())) ==
           static_cast<qint64>(bytes.size());
}

void QtTcpSocket::dropInput() {
    m_socket.readAll();
}

}  // namespace halvane::app
