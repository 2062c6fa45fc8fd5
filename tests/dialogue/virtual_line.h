#pragma once
// A serial line on a virtual clock between a console dialogue and a simulated device: what one writes
// reaches the other, at once or at 9600 baud, and every chunk is kept for the checks.

#include <algorithm>
#include <chrono>
#include <deque>
#include <string>
#include <vector>

#include "../core/scripted_operator.h"
#include "links/dialogue.h"
#include "sim/device.h"

namespace halvane::testing {

class VirtualLine {
  public:
    struct Chunk {
        bool toDevice;
        TimePoint at;  // when its last byte arrived
        std::string bytes;
    };
    static constexpr std::chrono::nanoseconds kByteTime{1041667};  // 10 bits at 9600 baud

    VirtualLine(Dialogue& dialogue, sim::Device& device, ScriptedOperator& op, bool paced = false)
        : m_dialogue(dialogue), m_device(device), m_op(op), m_paced(paced) {}

    // Runs the dialogue to its end, or until `limit` of virtual time has passed. Returns the end time.
    TimePoint run(TimePoint start = TimePoint{}, std::chrono::seconds limit = std::chrono::seconds(120)) {
        TimePoint now = start;
        m_dialogue.start(now);
        carryOut(now);
        while (!m_dialogue.finished() && now - start < limit) {
            now = std::max(now + std::chrono::microseconds(1), nextEvent(now));
            deliverToDevice(now);
            for (auto& chunk : m_device.takeDue(now)) {
                const TimePoint arrives = m_paced ? lineTime(m_inLineFree, now, chunk.size()) : now;
                m_fromDevice.push_back({false, arrives, std::move(chunk)});
            }
            while (!m_fromDevice.empty() && m_fromDevice.front().at <= now) {
                input += m_fromDevice.front().bytes;
                wire.push_back(std::move(m_fromDevice.front()));
                m_fromDevice.pop_front();
            }
            if (!input.empty()) input.erase(0, m_dialogue.onBytes(input, now));
            m_dialogue.onTime(now);
            carryOut(now);
        }
        // What was written last is still on its way when the dialogue ends.
        while (!m_toDevice.empty()) deliverToDevice(m_toDevice.front().at);
        return now;
    }

    // Everything the console wrote, and everything the device sent, each as one string.
    std::string written() const { return joined(true); }
    std::string received() const { return joined(false); }

    std::vector<Chunk> wire;
    std::string input;  // bytes at the console's port, not taken

  private:
    TimePoint lineTime(TimePoint& lineFree, TimePoint now, std::size_t bytes) {
        lineFree = std::max(lineFree, now) + kByteTime * static_cast<long>(bytes);
        return lineFree;
    }

    TimePoint nextEvent(TimePoint now) const {
        TimePoint next = TimePoint::max();
        if (auto d = m_dialogue.nextDeadline()) next = std::min(next, *d);
        if (auto d = m_device.nextDue()) next = std::min(next, std::max(*d, now));
        if (!m_toDevice.empty()) next = std::min(next, m_toDevice.front().at);
        if (!m_fromDevice.empty()) next = std::min(next, m_fromDevice.front().at);
        return next == TimePoint::max() ? now + std::chrono::milliseconds(1) : next;
    }

    void deliverToDevice(TimePoint now) {
        while (!m_toDevice.empty() && m_toDevice.front().at <= now) {
            m_device.receive(m_toDevice.front().bytes, m_toDevice.front().at);
            wire.push_back(std::move(m_toDevice.front()));
            m_toDevice.pop_front();
        }
    }

    void carryOut(TimePoint now) {
        for (auto actions = m_dialogue.takeActions(); !actions.empty(); actions = m_dialogue.takeActions()) {
            for (const auto& a : actions) {
                switch (a.kind) {
                    case DialogueAction::Kind::Write: {
                        const TimePoint arrives =
                            m_paced ? lineTime(m_outLineFree, now, a.bytes.size()) : now;
                        m_toDevice.push_back({true, arrives, a.bytes});
                        break;
                    }
                    case DialogueAction::Kind::DropInput:
                        input.clear();
                        break;
                    case DialogueAction::Kind::DropOutput:
                        break;
                    case DialogueAction::Kind::Ask:
                        m_dialogue.answer(m_op.ask(a.text, a.title, a.buttons), now);
                        break;
                    case DialogueAction::Kind::Tell:
                        if (a.critical)
                            m_op.critical(a.text, a.title);
                        else
                            m_op.tell(a.text, a.title);
                        break;
                }
            }
            deliverToDevice(now);
        }
    }

    std::string joined(bool toDevice) const {
        std::string out;
        for (const auto& c : wire)
            if (c.toDevice == toDevice) out += c.bytes;
        return out;
    }

    Dialogue& m_dialogue;
    sim::Device& m_device;
    ScriptedOperator& m_op;
    bool m_paced;
    std::deque<Chunk> m_toDevice;
    std::deque<Chunk> m_fromDevice;
    TimePoint m_outLineFree{};
    TimePoint m_inLineFree{};
};

}  // namespace halvane::testing
