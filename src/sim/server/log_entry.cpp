#include "sim/server/log_entry.h"

#include <cstdio>

#include "text/conversions.h"

namespace halvane::sim {

std::string formatLogEntry(const LogEntry& entry) {
    const auto ms = entry.at.count();
    char seconds[32];
    std::snprintf(seconds, sizeof seconds, "%lld.%03lld", static_cast<long long>(ms / 1000),
                  static_cast<long long>(ms % 1000));
    std::string line = std::string(seconds) + ' ' + entry.device;
    if (entry.kind == LogEntry::Kind::Note) return line + " -- " + entry.bytes;
    line += entry.kind == LogEntry::Kind::ToDevice ? " in" : " out";
    for (const char byte : entry.bytes) line += ' ' + text::hexByte(static_cast<std::uint8_t>(byte));
    return line;
}

}  // namespace halvane::sim
