#include "sim/server/pty_port.h"

#include <fcntl.h>
#include <stdlib.h>
#include <termios.h>

#include <cerrno>
#include <system_error>

namespace halvane::sim {

namespace {

[[noreturn]] void throwErrno(const std::string& what) {
    throw std::system_error(errno, std::generic_category(), what);
}

}  // namespace

PtyPort::PtyPort(std::filesystem::path link) {
    m_master.reset(::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
    if (!m_master) throwErrno("posix_openpt");
    if (::grantpt(m_master.get()) != 0 || ::unlockpt(m_master.get()) != 0) throwErrno("grantpt/unlockpt");
    char name[128];
    if (::ptsname_r(m_master.get(), name, sizeof name) != 0) throwErrno("ptsname_r");
    m_slavePath = name;
    if (!reopenSlave()) throwErrno("open " + m_slavePath);

    // Raw before the first byte is written: otherwise the line discipline turns CR into LF, swallows
    // control characters and echoes the console's bytes back to it.
    termios tio{};
    if (::tcgetattr(m_slave.get(), &tio) != 0) throwErrno("tcgetattr " + m_slavePath);
    ::cfmakeraw(&tio);
    tio.c_cflag &= ~static_cast<tcflag_t>(CSTOPB | PARENB | CRTSCTS);
    tio.c_cflag |= CS8 | CLOCAL | CREAD;
    ::cfsetispeed(&tio, B9600);
    ::cfsetospeed(&tio, B9600);
    if (::tcsetattr(m_slave.get(), TCSANOW, &tio) != 0) throwErrno("tcsetattr " + m_slavePath);

    if (!link.empty()) {
        std::filesystem::create_directories(link.parent_path());
        std::error_code ignored;
        std::filesystem::remove(link, ignored);
        std::filesystem::create_symlink(m_slavePath, link);
        m_link = std::move(link);
    }
}

PtyPort::~PtyPort() {
    if (m_link.empty()) return;
    // Leave a link alone if someone has pointed it elsewhere since.
    std::error_code error;
    if (std::filesystem::read_symlink(m_link, error) == m_slavePath) std::filesystem::remove(m_link, error);
}

bool PtyPort::reopenSlave() {
    m_slave.reset(::open(m_slavePath.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
    return static_cast<bool>(m_slave);
}

}  // namespace halvane::sim
