#pragma once
// The serial port over QSerialPort: 9600 baud, 8N1, no flow control, bytes passed unchanged and
// delivered as they come.

#include <QObject>
#include <QSerialPort>

#include "links/serial_port.h"

namespace halvane::app {

class QtSerialPort : public QObject, public SerialPort {
  public:
    explicit QtSerialPort(QObject* parent = nullptr);

    bool open(const std::string& deviceName) override;
    void close() override;
    bool isOpen() const override;
    std::string deviceName() const override;
    bool write(std::string_view bytes) override;
    void dropInput() override;
    void dropOutput() override;
    void setRts(bool on) override;
    void setDtr(bool on) override;
    bool deniedToUser() const override { return m_denied; }

  private:
    QSerialPort m_port;
    std::string m_deviceName;  // as open() was given it
    bool m_denied = false;
};

}  // namespace halvane::app
