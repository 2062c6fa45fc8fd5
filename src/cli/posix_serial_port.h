#pragma once
// The serial port for the command line, on the system's terminal calls: 9600 baud, 8N1, raw, no flow
// control. There is no event loop: `waitAndDeliver` waits for bytes up to a deadline and delivers what
// came, or a caller's own poll watches fd() and hands what it found to service(). A hang-up, an end of
// file or an I/O error closes the port and reports the line lost.

#include <chrono>
#include <string>

#include "links/serial_port.h"

namespace halvane::cli {

class PosixSerialPort : public SerialPort {
  public:
    ~PosixSerialPort() override;

    bool open(const std::string& deviceName) override;
    void close() override;
    bool isOpen() const override { return m_fd >= 0; }
    std::string deviceName() const override { return m_name; }
    bool write(std::string_view bytes) override;
    void dropInput() override;
    void dropOutput() override;
    void setRts(bool on) override;
    void setDtr(bool on) override;
    bool deniedToUser() const override { return m_denied; }

    // Waits until bytes can be read or `timeout` has passed, and delivers them. A line found gone is
    // reported lost.
    void waitAndDeliver(std::chrono::milliseconds timeout);
    // For a caller's poll: the descriptor to watch for POLLIN (-1 when closed), and what the poll found.
    int fd() const { return m_fd; }
    void service(short revents);
    // Why the last open failed.
    const std::string& error() const { return m_error; }

  private:
    void setModemLine(int line, bool on);
    std::size_t bytesAvailable() const;
    void readAndDeliver();
    void lose(const std::string& why);
    int m_fd = -1;
    std::string m_name;
    std::string m_error;
    bool m_denied = false;
};

}  // namespace halvane::cli
