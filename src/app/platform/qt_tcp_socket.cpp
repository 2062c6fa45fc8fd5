#include "platform/qt_tcp_socket.h"

#include <chrono>

#include "links/wifi_link.h"

namespace halvane::app {

QtTcpSocket::QtTcpSocket(QObject* parent) : QObject(parent) {
    m_deadline.setSingleShot(true);
    connect(&m_deadline, &QTimer::timeout, this, &QtTcpSocket::pollLink);
    connect(&m_socket, &QTcpSocket::stateChanged, this, [this] { pollLink(); });
    connect(&m_socket, &QTcpSocket::readyRead, this, [this] {
        const QByteArray chunk = m_socket.readAll();
        if (m_link) m_link->onData({chunk.constData(), static_cast<std::size_t>(chunk.size())});
        emit dataArrived();
    });
    connect(&m_socket, &QTcpSocket::errorOccurred, this, [this](QAbstractSocket::SocketError error) {
        if (error == QAbstractSocket::RemoteHostClosedError) {
            // The device hung up in an orderly way: not a fault. The next frame finds the link closed.
            if (m_link) m_link->onClosedByPeer();
        } else {
            m_failed = true;
            if (m_link) m_link->onError(errorNumber(error), m_socket.errorString().toStdString());
        }
        pollLink();
    });
}

QtTcpSocket::~QtTcpSocket() {
    // The socket reports its closing while it goes; nothing may hear it by then.
    m_socket.disconnect(this);
    m_link = nullptr;
}

void QtTcpSocket::attach(WifiLink& link) {
    m_link = &link;
    // Windows call the link too (a frame, a connect); whatever the call, the timer follows the link.
    link.setDeadlineMoved([this] { armDeadline(); });
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
    m_socket.abort();
    m_socket.connectToHost(QString::fromStdString(host), port);
    m_socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
}

void QtTcpSocket::close() {
    m_failed = false;
    m_socket.abort();
}

void QtTcpSocket::send(std::string_view bytes) {
    m_socket.write(bytes.data(), static_cast<qint64>(bytes.size()));
}

void QtTcpSocket::pollLink() {
    if (!m_link) return;
    m_link->poll(std::chrono::steady_clock::now());
}

void QtTcpSocket::armDeadline() {
    if (!m_link) return;
    const auto deadline = m_link->nextDeadline();
    if (!deadline) {
        m_deadline.stop();
        return;
    }
    const auto wait =
        std::chrono::duration_cast<std::chrono::milliseconds>(*deadline - std::chrono::steady_clock::now());
    m_deadline.start(static_cast<int>(std::max<std::chrono::milliseconds::rep>(0, wait.count())));
}

}  // namespace halvane::app
