#pragma once
// A serial port and a TCP socket in memory, for the link tests.

#include <set>
#include <string>
#include <vector>

#include "links/serial_port.h"
#include "links/tcp_socket.h"
#include "text/conversions.h"

namespace halvane::testing {

// Bytes as a line monitor shows them: "F1 05".
inline std::string hexBytes(std::string_view bytes) {
    std::string out;
    for (const char c : bytes) out += (out.empty() ? "" : " ") + text::hexByte(static_cast<std::uint8_t>(c));
    return out;
}

class FakeSerialPort : public SerialPort {
  public:
    std::set<std::string> present;  // devices that open
    std::string opened;
    std::string written;
    std::string input;               // received and not yet delivered
    std::vector<std::string> calls;  // opens and line settings, in order

    bool open(const std::string& device) override {
        calls.push_back("open " + device);
        if (!present.count(device) || !opened.empty()) return false;
        opened = device;
        return true;
    }
    void close() override { opened.clear(); }
    bool isOpen() const override { return !opened.empty(); }
    std::string deviceName() const override { return opened; }
    bool write(std::string_view bytes) override {
        if (opened.empty()) return false;
        written.append(bytes);
        return true;
    }
    void dropInput() override {
        input.clear();
        ++inputDrops;
    }
    void dropOutput() override {}
    // Bytes from the device, handed to whoever listens.
    void receive(std::string_view bytes) { deliver(bytes); }
    int inputDrops = 0;
    bool denied = false;  // a device this user may not open
    bool deniedToUser() const override { return denied; }
    void setRts(bool on) override { calls.push_back(on ? "RTS on" : "RTS off"); }
    void setDtr(bool on) override { calls.push_back(on ? "DTR on" : "DTR off"); }
    // The device goes away under the open port.
    void hangUp() {
        opened.clear();
        reportLost("unplugged");
    }
};

class FakeTcpSocket : public TcpSocket {
  public:
    int current = Closed;
    std::string host;
    std::uint16_t port = 0;
    std::string sent;
    int connects = 0;

    int state() const override { return current; }
    void connectTo(const std::string& h, std::uint16_t p) override {
        host = h;
        port = p;
        ++connects;
        become(Connecting);
    }
    void close() override { become(Closed); }
    bool write(std::string_view bytes) override {
        if (current != Connected) return false;
        sent.append(bytes);
        return true;
    }
    void dropInput() override {}

    // The socket's own events, as the platform would raise them.
    void become(int state) {
        current = state;
        stateChanged();
    }
    void receive(std::string_view bytes) { deliver(bytes); }
    void fail(int number, const std::string& description) {
        current = Error;
        failed(number, description);
    }
    void hangUp() {
        current = Closed;
        reportLost("closed by the device");
    }
};

}  // namespace halvane::testing
