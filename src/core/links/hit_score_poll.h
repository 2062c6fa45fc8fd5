#pragma once
// Asks every target for its hit count over the radio, one target at a time: the query, then a wait for
// the two-byte reply EA h, which stores h as decimal text in the score table. A target that is silent,
// or answers with another first byte, keeps the score it had. The next query goes out as soon as a
// whole reply is in, so an answering range is polled at the speed of the line.
//
// The poll never touches a port or a clock: it is told the bytes that come and the time, and says when
// it next wants to be woken. Before each query the caller drops what the line holds, and the poll
// forgets any partial reply, so a late reply is never credited to the next target.

#include <array>
#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "links/reply_wait.h"
#include "links/timed_machine.h"

namespace halvane {

class HitScorePoll : public TimedMachine {
  public:
    // Time allowed for each reply: the serial radio answers quicker than the other roads.
    static constexpr std::chrono::milliseconds kSerialRadioWait{150};
    static constexpr std::chrono::milliseconds kOtherWait{350};

    // How the replies come (see ReplyWait). With no carrier nothing comes, and each target's wait runs
    // all the same.
    enum class Road { SerialRadio, Socket, NoCarrier };

    struct Hooks {
        // Sends the query to `target` (the caller drops the line's input first).
        std::function<void(int target, TimePoint now)> query;
        // True while the query just sent still waits in its carrier (a Wi-Fi link still connecting);
        // the target's wait starts again when its time runs out meanwhile.
        std::function<bool()> queryWaiting;
        // Told after each target, answered or not, and once more when the poll ends.
        std::function<void(int target)> targetDone;
        std::function<void()> finished;
    };

    using ScoreTable = std::array<std::string, 202>;

    HitScorePoll(ScoreTable& scores, Hooks hooks);

    // Polls targets 1..count on `road`. Ignored while a poll runs.
    void start(Road road, int count, TimePoint now);
    // The poll stops where it is; the scores read so far stay.
    void abandon();

    // Bytes from the serial line, and chunks from the socket, as they come.
    void onSerial(std::string_view bytes) { m_wait.onSerial(bytes); }
    void onSocket(std::string_view chunk) { m_wait.onSocket(chunk); }

    std::optional<TimePoint> nextDeadline() const override;
    void onTime(TimePoint now) override;

    bool running() const { return m_target > 0; }
    // The target being asked, 1..count(); 0 when no poll runs.
    int target() const { return m_target; }
    int count() const { return m_count; }
    // Targets that answered with a score in the poll under way or the last one.
    int answered() const { return m_answered; }

  private:
    void ask(int target, TimePoint now);
    void finishTarget(TimePoint now);
    std::chrono::milliseconds wait() const {
        return m_road == Road::SerialRadio ? kSerialRadioWait : kOtherWait;
    }

    ScoreTable& m_scores;
    Hooks m_hooks;
    Road m_road = Road::NoCarrier;
    int m_count = 0;
    int m_target = 0;
    int m_answered = 0;
    ReplyWait m_wait;
    TimePoint m_askedAt{};
};

}  // namespace halvane
