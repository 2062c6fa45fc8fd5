#include "links/hit_score_poll.h"

#include <cstdint>
#include <utility>

namespace halvane {

HitScorePoll::HitScorePoll(ScoreTable& scores, Hooks hooks) : m_scores(scores), m_hooks(std::move(hooks)) {}

void HitScorePoll::start(Road road, int count, TimePoint now) {
    if (running() || count < 1) return;
    m_road = road;
    m_count = count;
    ask(1, now);
}

void HitScorePoll::abandon() {
    m_target = 0;
    m_reply.clear();
}

void HitScorePoll::ask(int target, TimePoint now) {
    m_target = target;
    m_reply.clear();
    m_askedAt = now;
    m_deadline = now + (m_road == Road::SerialRadio ? kSerialRadioWait : kOtherWait);
    if (m_hooks.query) m_hooks.query(target, now);
}

void HitScorePoll::onSerial(std::string_view bytes) {
    if (!running() || m_road != Road::SerialRadio) return;
    // What follows a whole reply is left behind; the line is dropped before the next query.
    for (const char byte : bytes) {
        if (replyWhole()) break;
        m_reply.push_back(byte);
    }
}

void HitScorePoll::onSocket(std::string_view chunk) {
    if (!running() || m_road != Road::Socket || replyWhole()) return;
    m_reply.assign(chunk);
}

std::optional<TimePoint> HitScorePoll::nextDeadline() const {
    if (!running()) return std::nullopt;
    // A whole reply moves the poll on at once.
    return replyWhole() ? m_askedAt : m_deadline;
}

void HitScorePoll::onTime(TimePoint now) {
    if (!running() || (!replyWhole() && now < m_deadline)) return;
    if (!replyWhole() && m_hooks.queryWaiting && m_hooks.queryWaiting()) {
        m_deadline = now + (m_road == Road::SerialRadio ? kSerialRadioWait : kOtherWait);
        return;
    }
    finishTarget(now);
}

void HitScorePoll::finishTarget(TimePoint now) {
    const int target = m_target;
    if (replyWhole() && static_cast<std::uint8_t>(m_reply[0]) == wire::kScoreReply)
        m_scores[static_cast<std::size_t>(target)] = std::to_string(static_cast<std::uint8_t>(m_reply[1]));
    m_reply.clear();
    const bool last = target >= m_count;
    if (last) m_target = 0;
    if (m_hooks.targetDone) m_hooks.targetDone(target);
    if (last) {
        if (m_hooks.finished) m_hooks.finished();
        return;
    }
    // The operator may have stopped the poll while the target was being shown.
    if (m_target == target) ask(target + 1, now);
}

}  // namespace halvane
