#include "platform/qt_serial_port.h"

#include <unistd.h>

#include <cerrno>

namespace halvane::app {

QtSerialPort::QtSerialPort(QObject* parent) : QObject(parent) {
    connect(&m_port, &QSerialPort::readyRead, this, [this] {
        const QByteArray bytes = m_port.readAll();
        deliver({bytes.constData(), static_cast<std::size_t>(bytes.size())});
    });
    connect(&m_port, &QSerialPort::errorOccurred, this, [this](QSerialPort::SerialPortError error) {
        // A vanished line (a device unplugged, the far end of a pty closed) reports its error over and
        // over until the port is closed: close it at the first report.
        const bool lineGone = error == QSerialPort::ResourceError || error == QSerialPort::ReadError ||
                              error == QSerialPort::WriteError;
        if (!lineGone || !m_port.isOpen()) return;
        const QString why = m_port.errorString();
        m_port.close();
        reportLost(why.toStdString());
    });
}

bool QtSerialPort::open(const std::string& deviceName) {
    if (m_port.isOpen()) return false;
    m_port.setPortName(QString::fromStdString(deviceName));
    m_port.setBaudRate(QSerialPort::Baud9600);
    m_port.setDataBits(QSerialPort::Data8);
    m_port.setParity(QSerialPort::NoParity);
    m_port.setStopBits(QSerialPort::OneStop);
    m_port.setFlowControl(QSerialPort::NoFlowControl);
    // The adapter reports a port held by another program as a want of permission too: the device's
    // own mode decides which it was.
    m_denied = false;
    if (!m_port.open(QIODevice::ReadWrite)) {
        m_denied = m_port.error() == QSerialPort::PermissionError &&
                   ::access(deviceName.c_str(), R_OK | W_OK) != 0 && errno == EACCES;
        return false;
    }
    m_deviceName = deviceName;
    clearLost();
    return true;
}

void QtSerialPort::close() {
    if (m_port.isOpen()) m_port.close();
}

bool QtSerialPort::isOpen() const {
    return m_port.isOpen();
}

// QSerialPort::portName() shortens "/dev/ttyS0" to "ttyS0": the name as given is what the shared
// port is compared by.
std::string QtSerialPort::deviceName() const {
    return m_port.isOpen() ? m_deviceName : std::string();
}

bool QtSerialPort::write(std::string_view bytes) {
    if (!m_port.isOpen()) return false;
    if (m_port.write(bytes.data(), static_cast<qint64>(bytes.size())) != static_cast<qint64>(bytes.size()))
        return false;
    // The bytes go to the line now, not when the event loop next looks: a run's step would otherwise
    // wait behind the repaint of the range it has just changed.
    m_port.flush();
    return true;
}

void QtSerialPort::dropInput() {
    if (!m_port.isOpen()) return;
    m_port.clear(QSerialPort::Input);
    m_port.readAll();
}

void QtSerialPort::dropOutput() {
    if (m_port.isOpen()) m_port.clear(QSerialPort::Output);
}

void QtSerialPort::setRts(bool on) {
    if (m_port.isOpen()) m_port.setRequestToSend(on);
}

void QtSerialPort::setDtr(bool on) {
    if (m_port.isOpen()) m_port.setDataTerminalReady(on);
}

}  // namespace halvane::app
