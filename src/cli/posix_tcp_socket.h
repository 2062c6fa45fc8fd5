#pragma once
// The Wi-Fi link's socket for the command line, on the system's socket calls. There is no event loop
// here: the caller polls fd() for pollEvents() (with no wait at all while due()) and hands what the
// poll found to service(), which reads, finishes a connect, sends what waited, and reports as events.
// Connecting never blocks, except for the lookup of a host given by name.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "links/tcp_socket.h"

namespace halvane::cli {

class PosixTcpSocket : public TcpSocket {
  public:
    PosixTcpSocket() = default;
    ~PosixTcpSocket() override;
    PosixTcpSocket(const PosixTcpSocket&) = delete;
    PosixTcpSocket& operator=(const PosixTcpSocket&) = delete;

    int state() const override { return m_state; }
    // The device is an IPv4 server: a dotted address, or a name looked up for one.
    void connectTo(const std::string& host, std::uint16_t port) override;
    void close() override;
    // Sends at once what the socket takes and keeps the rest for service(); false when not connected
    // or the connection broke (it then stands closed, as the next state() says).
    bool write(std::string_view bytes) override;
    void dropInput() override;

    // -1 when there is nothing to poll.
    int fd() const { return m_fd; }
    short pollEvents() const;
    // An outcome known before any poll (a refused connect, a name not found) waits to be reported.
    bool due() const { return m_pending.has_value(); }
    // Bytes written but not yet taken by the system.
    bool sending() const { return !m_out.empty(); }
    void service(short revents);

    // The error numbers the operator sees, in the numbering the console has always shown.
    static int errorNumber(int systemError);
    static constexpr int kHostNotFound = 11001;

  private:
    struct Failure {
        int number;
        std::string words;
    };
    void finishConnect();
    void readOnce();
    bool flushOut();
    void fail(Failure failure);
    void hangUp(const std::string& why);
    void closeFd();
    void setState(int state);

    int m_fd = -1;
    int m_state = Closed;
    std::string m_out;
    std::optional<Failure> m_pending;
};

}  // namespace halvane::cli
