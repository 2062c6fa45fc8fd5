#include "cli/posix_serial_port.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace halvane::cli {

PosixSerialPort::~PosixSerialPort() {
    close();
}

bool PosixSerialPort::open(const std::string& deviceName) {
    if (m_fd >= 0) return false;
    const int fd = ::open(deviceName.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    m_denied = fd < 0 && (errno == EACCES || errno == EPERM);
    if (fd < 0) {
        m_error = std::strerror(errno);
        return false;
    }
    termios tio{};
    if (::tcgetattr(fd, &tio) != 0) {
        m_error = std::strerror(errno);
        ::close(fd);
        return false;
    }
    ::cfmakeraw(&tio);
    ::cfsetispeed(&tio, B9600);
    ::cfsetospeed(&tio, B9600);
    tio.c_cflag |= CLOCAL | CREAD;
    tio.c_cflag &= ~static_cast<tcflag_t>(CSTOPB | PARENB | CRTSCTS);
    tio.c_iflag &= ~static_cast<tcflag_t>(IXON | IXOFF | IXANY);
    if (::tcsetattr(fd, TCSANOW, &tio) != 0) {
        m_error = std::strerror(errno);
        ::close(fd);
        return false;
    }
    m_fd = fd;
    m_name = deviceName;
    clearLost();
    return true;
}

void PosixSerialPort::lose(const std::string& why) {
    close();
    reportLost(why);
}

void PosixSerialPort::close() {
    if (m_fd < 0) return;
    ::close(m_fd);
    m_fd = -1;
    m_name.clear();
}

bool PosixSerialPort::write(std::string_view bytes) {
    if (m_fd < 0) return false;
    std::size_t done = 0;
    while (m_fd >= 0 && done < bytes.size()) {
        const ssize_t n = ::write(m_fd, bytes.data() + done, bytes.size() - done);
        if (n > 0) {
            done += static_cast<std::size_t>(n);
        } else if (n < 0 && errno == EAGAIN) {
            pollfd p{m_fd, POLLOUT, 0};
            ::poll(&p, 1, 100);
        } else if (n < 0 && errno != EINTR) {
            lose(std::strerror(errno));
            return false;
        }
    }
    return m_fd >= 0;
}

std::size_t PosixSerialPort::bytesAvailable() const {
    int count = 0;
    if (m_fd < 0 || ::ioctl(m_fd, FIONREAD, &count) != 0) return 0;
    return static_cast<std::size_t>(count);
}

void PosixSerialPort::readAndDeliver() {
    char buffer[512];
    while (m_fd >= 0) {
        const ssize_t n = ::read(m_fd, buffer, sizeof buffer);
        if (n > 0) {
            deliver({buffer, static_cast<std::size_t>(n)});
            continue;
        }
        // End of file, or EIO, is a line whose far end has gone.
        if (n == 0) lose("the line hung up");
        if (n < 0 && errno != EAGAIN && errno != EINTR) lose(std::strerror(errno));
        return;
    }
}

void PosixSerialPort::dropInput() {
    if (m_fd >= 0) ::tcflush(m_fd, TCIFLUSH);
}

void PosixSerialPort::dropOutput() {
    if (m_fd >= 0) ::tcflush(m_fd, TCOFLUSH);
}

void PosixSerialPort::setModemLine(int line, bool on) {
    if (m_fd >= 0) ::ioctl(m_fd, on ? TIOCMBIS : TIOCMBIC, &line);
}

void PosixSerialPort::setRts(bool on) {
    setModemLine(TIOCM_RTS, on);
}
void PosixSerialPort::setDtr(bool on) {
    setModemLine(TIOCM_DTR, on);
}

void PosixSerialPort::waitAndDeliver(std::chrono::milliseconds timeout) {
    if (m_fd < 0) return;
    pollfd p{m_fd, POLLIN, 0};
    if (::poll(&p, 1, static_cast<int>(std::max<std::chrono::milliseconds::rep>(timeout.count(), 0))) <= 0)
        return;
    service(p.revents);
}

void PosixSerialPort::service(short revents) {
    if (m_fd < 0) return;
    // A hang-up with nothing left to read: the line is gone. (A pty whose far end has closed reports
    // POLLIN too, but a read then only gives end of file.)
    if ((revents & (POLLHUP | POLLERR | POLLNVAL)) && bytesAvailable() == 0) {
        lose(revents & POLLHUP ? "the line hung up" : "the line reports an error");
        return;
    }
    if (revents & POLLIN) readAndDeliver();
}

}  // namespace halvane::cli
