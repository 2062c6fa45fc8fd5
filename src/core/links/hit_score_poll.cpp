#include "links/hit_score_poll.h"

#include <cstdint>
#include <utility>

#include "text/wire_vocabulary.h"

namespace halvane {

HitScorePoll::HitScorePoll(ScoreTable& scores, Hooks hooks) : m_scores(scores), m_hooks(std::move(hooks)) {}

void HitScorePoll::start(Road road, int count, TimePoint now) {
    if (running() || count < 1) return;
    m_road = road;
    m_count = count;
    m_answered = 0;
    ask(1, now);
}

void HitScorePoll::abandon() {
    m_target = 0;
    m_wait.stop();
}

void HitScorePoll::ask(int target, TimePoint now) {
    m_target = target;
    m_askedAt = now;
    const auto road = m_road == Road::SerialRadio ? ReplyWait::Road::Serial
                      : m_road == Road::Socket    ? ReplyWait::Road::Socket
                                                  : ReplyWait::Road::NoCarrier;
    m_wait.start(road, wire::kScoreReplyLength, now + wait());
    if (m_hooks.query) m_hooks.query(target, now);
}

std::optional<TimePoint> HitScorePoll::nextDeadline() const {
    if (!running()) return std::nullopt;
    // A whole reply moves the poll on at once.
    return m_wait.whole() ? m_askedAt : m_wait.deadline();
}

void HitScorePoll::onTime(TimePoint now) {
    if (!running() || (!m_wait.whole() && !m_wait.timedOut(now))) return;
    if (!m_wait.whole() && m_hooks.queryWaiting && m_hooks.queryWaiting()) {
        m_wait.extend(now + wait());
        return;
    }
    finishTarget(now);
}

void HitScorePoll::finishTarget(TimePoint now) {
    const int target = m_target;
    const std::string& reply = m_wait.reply();
    if (m_wait.whole() && static_cast<std::uint8_t>(reply[0]) == wire::kScoreReply) {
        m_scores[static_cast<std::size_t>(target)] = std::to_string(static_cast<std::uint8_t>(reply[1]));
        ++m_answered;
    }
    m_wait.stop();
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
