#pragma once
// One line of the frame log: a chunk that crossed between the console and a simulated device, or a
// note on a connection.

#include <chrono>
#include <string>

namespace halvane::sim {

struct LogEntry {
    enum class Kind {
        ToDevice,   // from the console to the device
        ToConsole,  // from the device to the console
        Note,       // `bytes` is text: a connection opened or closed, a line hung up
    };
    std::chrono::milliseconds at{0};  // since the server started
    std::string device;               // the device's name; on TCP with the connection's number
    Kind kind = Kind::Note;
    std::string bytes;
};

// "12.345 transmitter in 53 01": seconds, device, "in" (to the device), "out" (to the console) or
// "--" (a note), then the bytes in hexadecimal or the note's text.
std::string formatLogEntry(const LogEntry& entry);

}  // namespace halvane::sim
