#pragma once
// The wait for one reply of a known length from a target, over the radio. On the serial line bytes add
// up until the reply is whole; on the socket a reply must arrive whole: each chunk replaces what came
// before, so pieces never add up and a longer chunk is no reply. With no carrier nothing comes. The
// wait knows its deadline; the caller decides what a time-out means.

#include <cstddef>
#include <string>
#include <string_view>

#include "links/timed_read.h"

namespace halvane {

class ReplyWait {
  public:
    enum class Road { Serial, Socket, NoCarrier };

    // Waits afresh: what came before is forgotten.
    void start(Road road, std::size_t length, TimePoint deadline) {
        m_road = road;
        m_length = length;
        m_deadline = deadline;
        m_reply.clear();
        m_waiting = true;
    }
    void stop() {
        m_waiting = false;
        m_reply.clear();
    }
    // Gives the wait more time (the question had not yet left).
    void extend(TimePoint deadline) { m_deadline = deadline; }

    void onSerial(std::string_view bytes) {
        if (!m_waiting || m_road != Road::Serial) return;
        // What follows a whole reply is left behind; the line is dropped before the next question.
        for (const char byte : bytes) {
            if (whole()) break;
            m_reply.push_back(byte);
        }
    }
    void onSocket(std::string_view chunk) {
        if (m_waiting && m_road == Road::Socket && !whole()) m_reply.assign(chunk);
    }

    bool waiting() const { return m_waiting; }
    bool whole() const { return m_waiting && m_reply.size() == m_length; }
    bool timedOut(TimePoint now) const { return m_waiting && !whole() && now >= m_deadline; }
    TimePoint deadline() const { return m_deadline; }
    const std::string& reply() const { return m_reply; }

  private:
    Road m_road = Road::NoCarrier;
    std::size_t m_length = 0;
    TimePoint m_deadline{};
    std::string m_reply;
    bool m_waiting = false;
};

}  // namespace halvane
