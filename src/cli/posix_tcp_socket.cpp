#include "cli/posix_tcp_socket.h"

#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace halvane::cli {

namespace {

// Numeric addresses first, so that the usual case never waits for a name service.
std::optional<in_addr> lookUp(const std::string& host) {
    in_addr address{};
    if (::inet_pton(AF_INET, host.c_str(), &address) == 1) return address;
    addrinfo hints{};
    hints.ai_family = AF_INET;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    if (::getaddrinfo(host.c_str(), nullptr, &hints, &found) != 0 || !found) return std::nullopt;
    address = reinterpret_cast<const sockaddr_in*>(found->ai_addr)->sin_addr;
    ::freeaddrinfo(found);
    return address;
}

}  // namespace

PosixTcpSocket::~PosixTcpSocket() {
    closeFd();
}

int PosixTcpSocket::errorNumber(int systemError) {
    switch (systemError) {
        case EACCES:
            return 10013;
        case EADDRINUSE:
            return 10048;
        case EADDRNOTAVAIL:
            return 10049;
        case ENETDOWN:
            return 10050;
        case ENETUNREACH:
            return 10051;
        case ECONNABORTED:
            return 10053;
        case ECONNRESET:
            return 10054;
        case ENOBUFS:
            return 10055;
        case ETIMEDOUT:
            return 10060;
        case ECONNREFUSED:
            return 10061;
        case EHOSTUNREACH:
            return 10065;
        default:
            return systemError;
    }
}

void PosixTcpSocket::setState(int state) {
    if (state == m_state) return;
    m_state = state;
    stateChanged();
}

void PosixTcpSocket::closeFd() {
    if (m_fd >= 0) ::close(m_fd);
    m_fd = -1;
    m_out.clear();
}

void PosixTcpSocket::connectTo(const std::string& host, std::uint16_t port) {
    closeFd();
    m_pending.reset();
    clearLost();
    setState(Connecting);
    const auto address = lookUp(host);
    if (!address) {
        m_pending = Failure{kHostNotFound, "Host not found"};
        return;
    }
    m_fd = ::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    if (m_fd < 0) {
        m_pending = Failure{errorNumber(errno), std::strerror(errno)};
        return;
    }
    // A frame is a few bytes that must go out at once, not wait for company.
    const int on = 1;
    ::setsockopt(m_fd, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    sockaddr_in to{};
    to.sin_family = AF_INET;
    to.sin_addr = *address;
    to.sin_port = htons(port);
    if (::connect(m_fd, reinterpret_cast<const sockaddr*>(&to), sizeof to) == 0 || errno == EINPROGRESS)
        return;
    // Even a refusal known at once is reported from service(), as if it had come over the wire: the frames
    // of one step all wait on this one attempt, and its failure is told once.
    m_pending = Failure{errorNumber(errno), std::strerror(errno)};
    closeFd();
}

void PosixTcpSocket::close() {
    closeFd();
    m_pending.reset();
    setState(Closed);
}

short PosixTcpSocket::pollEvents() const {
    if (m_fd < 0) return 0;
    if (m_state == Connecting) return POLLOUT;
    if (m_state == Connected) return static_cast<short>(POLLIN | (m_out.empty() ? 0 : POLLOUT));
    return 0;
}

void PosixTcpSocket::service(short revents) {
    if (m_pending) {
        fail(*std::exchange(m_pending, std::nullopt));
        return;
    }
    if (m_fd < 0 || revents == 0) return;
    if (m_state == Connecting) {
        finishConnect();
        return;
    }
    if (m_state != Connected) return;
    if ((revents & POLLOUT) && !flushOut()) {
        hangUp(std::strerror(errno));
        return;
    }
    if (revents & (POLLIN | POLLHUP | POLLERR)) readOnce();
}

void PosixTcpSocket::finishConnect() {
    int error = 0;
    socklen_t size = sizeof error;
    if (::getsockopt(m_fd, SOL_SOCKET, SO_ERROR, &error, &size) != 0) error = errno;
    if (error != 0) {
        fail({errorNumber(error), std::strerror(error)});
        return;
    }
    setState(Connected);
}

// One read a wake-up: what came together is one chunk, as the device's hello must be.
void PosixTcpSocket::readOnce() {
    char buffer[4096];
    const ssize_t n = ::recv(m_fd, buffer, sizeof buffer, 0);
    if (n > 0) {
        deliver({buffer, static_cast<std::size_t>(n)});
    } else if (n == 0) {
        hangUp("the device closed the connection");
    } else if (errno == ECONNRESET) {
        hangUp(std::strerror(errno));
    } else if (errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR) {
        fail({errorNumber(errno), std::strerror(errno)});
    }
}

bool PosixTcpSocket::write(std::string_view bytes) {
    if (m_state != Connected || m_fd < 0) return false;
    m_out.append(bytes);
    if (flushOut()) return true;
    // The connection broke under the frame: the socket stands closed, and the caller finds it so.
    closeFd();
    m_state = Closed;
    return false;
}

bool PosixTcpSocket::flushOut() {
    while (!m_out.empty()) {
        const ssize_t n = ::send(m_fd, m_out.data(), m_out.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
        if (n > 0) {
            m_out.erase(0, static_cast<std::size_t>(n));
        } else if (n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) {
            return true;  // the rest goes when the socket is writable again
        } else if (n < 0 && errno != EINTR) {
            return false;
        }
    }
    return true;
}

void PosixTcpSocket::dropInput() {
    char buffer[4096];
    while (m_fd >= 0 && ::recv(m_fd, buffer, sizeof buffer, MSG_DONTWAIT) > 0) {
    }
}

void PosixTcpSocket::fail(Failure failure) {
    closeFd();
    m_state = Error;
    // The cause is told before the state it leaves.
    failed(failure.number, failure.words);
    stateChanged();
}

// The device went away without a fault of the link: the socket closes, and the link hears of the loss.
void PosixTcpSocket::hangUp(const std::string& why) {
    closeFd();
    m_state = Closed;
    reportLost(why);
    stateChanged();
}

}  // namespace halvane::cli
