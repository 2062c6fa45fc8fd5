#pragma once
// A serial port and a TCP socket in memory, for the link tests.

#include <set>
#include <string>
#include <vector>

#include "links/serial_port.h"
#include "links/tcp_socket.h"

namespace halvane::testing {

class FakeSerialPort : public SerialPort {
  public:
    std::set<std::string> present;  // devices that open
    std::string opened;
    std::string written;
    std::string input;
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
    void write(std::string_view bytes) override { written.append(bytes); }
    std::size_t bytesAvailable() const override { return input.size(); }
    std::string read(std::size_t max) override {
        std::string out = input.substr(0, max);
        input.erase(0, out.size());
        return out;
    }
    void dropInput() override { input.clear(); }
    void dropOutput() override {}
    void setRts(bool on) override { calls.push_back(on ? "RTS on" : "RTS off"); }
    void setDtr(bool on) override { calls.push_back(on ? "DTR on" : "DTR off"); }
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
        current = Connecting;
    }
    void close() override { current = Closed; }
    void send(std::string_view bytes) override { sent.append(bytes); }
};

}  // namespace halvane::testing
