#pragma once
// Helpers for driving simulated devices on a virtual clock, with bytes written as hexadecimal text.

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "sim/device.h"
#include "sim/range.h"

namespace halvane::sim::testing {

using std::chrono::milliseconds;

// A point on the virtual clock, well away from the clock's epoch.
inline TimePoint at(int ms) {
    return TimePoint{} + std::chrono::hours(1) + milliseconds(ms);
}

// "F3 0A" to the bytes F3 0A.
inline std::string hex(std::string_view text) {
    std::istringstream in{std::string(text)};
    std::string out;
    for (std::string pair; in >> pair;) out.push_back(static_cast<char>(std::stoi(pair, nullptr, 16)));
    return out;
}

// The bytes as "F3 0A", to compare binary replies readably.
inline std::string hexOf(std::string_view bytes) {
    static constexpr char kDigits[] = "0123456789ABCDEF";
    std::string out;
    for (char c : bytes) {
        const auto b = static_cast<unsigned char>(c);
        if (!out.empty()) out.push_back(' ');
        out += {kDigits[b >> 4], kDigits[b & 15]};
    }
    return out;
}

// The block with its 16-bit sum behind it, high byte first.
inline std::string withSum(std::string block) {
    unsigned sum = 0;
    for (char c : block) sum += static_cast<unsigned char>(c);
    return block + static_cast<char>(sum >> 8 & 0xFF) + static_cast<char>(sum & 0xFF);
}

// The chunks due by `now`, each as hexadecimal text, joined by " | ".
inline std::string dueHex(Device& device, TimePoint now) {
    std::string out;
    for (const std::string& chunk : device.takeDue(now)) out += (out.empty() ? "" : " | ") + hexOf(chunk);
    return out;
}

// Sends bytes at `now` and gives what has fallen due by then, chunks joined.
inline std::string exchange(Device& device, std::string_view bytes, TimePoint now) {
    device.receive(bytes, now);
    std::string out;
    for (const std::string& chunk : device.takeDue(now)) out += chunk;
    return out;
}

// One exchange of a script: bytes sent at `ms` (none for a mere look at the clock) and all that has
// fallen due by then.
struct Step {
    int ms;
    std::string in;
    std::string out;
};

inline void run(Device& device, const std::vector<Step>& steps) {
    for (const Step& s : steps)
        EXPECT_EQ(hexOf(exchange(device, s.in, at(s.ms))), hexOf(s.out)) << s.ms << " ms";
}

// Each target as face letter (Down, Edge, fOe, Friend) and hits, with "#n" when its number is not its
// slot and "@c" when its channel is not 0: "F0 O3#9 D0@2".
inline std::string describe(const Range& range) {
    std::string out;
    for (const TargetView& t : range.snapshot()) {
        if (!out.empty()) out.push_back(' ');
        out.push_back("DEOF"[static_cast<int>(t.face) - 0xF0]);
        out += std::to_string(t.hits);
        if (t.number != t.slot) out += "#" + std::to_string(t.number);
        if (t.channel != 0) out += "@" + std::to_string(t.channel);
    }
    return out;
}

// A stand-in device: an optional hello, then for each piece received whatever `answer` makes of it, all
// due at once; asks to hang up once it has been sent "Q".
class ScriptedDevice : public Device {
  public:
    using Answer = std::function<std::string(std::string_view)>;

    explicit ScriptedDevice(
        std::string hello = {}, Answer answer = [](std::string_view bytes) { return std::string(bytes); })
        : m_answer(std::move(answer)) {
        if (!hello.empty()) m_due.push_back(std::move(hello));
    }
    std::string name() const override { return "scripted"; }
    void receive(std::string_view bytes, TimePoint) override {
        m_close = m_close || bytes == "Q";
        if (auto reply = m_answer(bytes); !m_close && !reply.empty()) m_due.push_back(std::move(reply));
    }
    std::vector<std::string> takeDue(TimePoint) override { return std::exchange(m_due, {}); }
    std::optional<TimePoint> nextDue() const override {
        return m_due.empty() ? std::nullopt : std::optional(TimePoint{});
    }
    bool wantsClose() const override { return m_close; }

  private:
    Answer m_answer;
    std::vector<std::string> m_due;
    bool m_close = false;
};

}  // namespace halvane::sim::testing
