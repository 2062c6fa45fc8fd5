#include "sim/radio_modem.h"

#include <algorithm>
#include <cctype>

#include "sim/devices.h"
#include "sim/target_air.h"
#include "text/conversions.h"

namespace halvane::sim {

void RadioModem::settle(TimePoint now) {
    const TimePoint guardEnd = m_lastByteAt + kGuard;
    if (m_plusHeld > 0 && now >= guardEnd) {
        // One or two "+" alone are no command and start no frame: the air would ignore them.
        if (m_plusHeld == 3) {
            m_commandMode = true;
            m_lastCommandAt = guardEnd;
            m_line.clear();
            m_out.reply("OK\r", guardEnd);
        }
        m_plusHeld = 0;
    }
    if (m_commandMode && now - m_lastCommandAt >= kCommandTimeout) m_commandMode = false;
}

void RadioModem::receive(std::string_view bytes, TimePoint now) {
    if (bytes.empty()) return;
    settle(now);
    const bool afterGuard = !m_heardAny || now - m_lastByteAt >= kGuard;
    std::string data;
    for (char c : bytes) {
        if (m_commandMode) {
            if (c == '\r') {
                onCommandLine(now);
            } else if (c > ' ' && c <= '~' && m_line.size() < 32) {
                m_line.push_back(static_cast<char>(std::toupper(static_cast<unsigned char>(c))));
            }
            continue;
        }
        if (c == '+' && m_plusHeld < 3 && (m_plusHeld > 0 || (afterGuard && data.empty()))) {
            ++m_plusHeld;
            continue;
        }
        data.append(static_cast<std::size_t>(m_plusHeld), '+');
        m_plusHeld = 0;
        data.push_back(c);
    }
    m_heardAny = true;
    m_lastByteAt = now;
    for (const std::string& frame : m_air.feed(data, now)) {
        for (std::string& reply : hearFrame(m_range, frame, m_channel)) m_out.reply(std::move(reply), now);
    }
}

void RadioModem::onCommandLine(TimePoint now) {
    const std::string line = std::move(m_line);
    m_line.clear();
    if (line.empty()) return;
    m_lastCommandAt = now;
    std::string answer = "OK";
    if (line == "ATHP") {
        answer = text::Hex(m_channel);
    } else if (line.starts_with("ATHP")) {
        const auto value = text::parseHex(std::string_view(line).substr(4));
        if (value && *value <= kMaxChannel) {
            m_channel = static_cast<int>(*value);
        } else {
            answer = "ERROR";
        }
    } else if (line == "ATCN") {
        m_commandMode = false;
    } else if (line != "AT" && line != "ATWR") {
        answer = "ERROR";
    }
    m_out.reply(answer + "\r", now);
}

std::vector<std::string> RadioModem::takeDue(TimePoint now) {
    settle(now);
    return m_out.takeDue(now);
}

std::optional<TimePoint> RadioModem::nextDue() const {
    std::optional<TimePoint> next = m_out.nextDue();
    if (m_plusHeld == 3) {
        const TimePoint escape = m_lastByteAt + kGuard;
        next = next ? std::min(*next, escape) : escape;
    }
    return next;
}

std::unique_ptr<Device> makeRadioModem(Range& range, Faults faults) {
    return std::make_unique<RadioModem>(range, faults);
}

}  // namespace halvane::sim
