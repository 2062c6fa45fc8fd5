#include "sim/server/tcp_listener.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <cerrno>
#include <string>
#include <system_error>

namespace halvane::sim {

namespace {

[[noreturn]] void throwErrno(const std::string& what) {
    throw std::system_error(errno, std::generic_category(), what);
}

}  // namespace

TcpListener::TcpListener(std::uint16_t port) {
    m_fd.reset(::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    if (!m_fd) throwErrno("socket");
    // A restarted simulator gets its fixed port back while old connections linger in TIME_WAIT.
    const int on = 1;
    ::setsockopt(m_fd.get(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);

    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    if (::bind(m_fd.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        throwErrno("bind 127.0.0.1:" + std::to_string(port));
    if (::listen(m_fd.get(), SOMAXCONN) != 0) throwErrno("listen");
    socklen_t length = sizeof address;
    if (::getsockname(m_fd.get(), reinterpret_cast<sockaddr*>(&address), &length) != 0)
        throwErrno("getsockname");
    m_port = ntohs(address.sin_port);
}

std::optional<UniqueFd> TcpListener::accept() {
    for (;;) {
        UniqueFd connection(::accept4(m_fd.get(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
        if (connection) {
            const int on = 1;
            ::setsockopt(connection.get(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
            return connection;
        }
        // A client that gave up between its connect and our accept is no reason to stop accepting.
        if (errno == ECONNABORTED || errno == EINTR) continue;
        return std::nullopt;
    }
}

}  // namespace halvane::sim
