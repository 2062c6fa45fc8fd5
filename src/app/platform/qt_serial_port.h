#pragma once
// The serial port over QSerialPort: 9600 baud, 8N1, no flow control, bytes passed unchanged.

#include <QObject>
#include <QSerialPort>

#include "links/serial_port.h"

namespace halvane::app {

class QtSerialPort : public QObject, public SerialPort {
    Q_OBJECT
  public:
    explicit QtSerialPort(QObject* parent = nullptr);

    bool open(const std::string& deviceName) override;
    void close() override;
    bool isOpen() const override;
    std::string deviceName() const override;
    void write(std::string_view bytes) override;
    std::size_t bytesAvailable() const override;
    std::string read(std::size_t max) override;
    void dropInput() override;
    void dropOutput() override;
    void setRts(bool on) override;
    void setDtr(bool on) override;

  signals:
    void bytesArrived();
    // The line went away under an open port (a device unplugged, the far end of a pty closed); the
    // port is closed by then and SerialPort::lost() is true.
    void lineLost(const QString& why);

  private:
    QSerialPort m_port;
    std::string m_deviceName;  // as open() was given it
};

}  // namespace halvane::app
