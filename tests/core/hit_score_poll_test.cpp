// The hit score poll on a virtual clock: when each query goes out, what a reply must look like on each
// road to count, and what is kept when a target is silent, late, foreign or the poll is stopped.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "links/hit_score_poll.h"

namespace halvane::testing {
namespace {

using namespace std::chrono_literals;
using Road = HitScorePoll::Road;
const TimePoint t0 = TimePoint{} + std::chrono::hours(1000);

// Something that comes at a moment after the start: bytes on the line or a chunk on the socket.
struct Arrival {
    std::chrono::milliseconds at;
    std::string bytes;
};

class PollRun {
  public:
    explicit PollRun(Road road) : m_road(road) {
        scores.fill("");
        scores[2] = "9";  // an earlier score, kept when target 2 gives no valid reply
    }

    // Runs a poll of `count` targets to its end on a virtual clock, feeding the arrivals in order and
    // waking the poll at each deadline; notes each query as "t@ms".
    void run(int count, const std::vector<Arrival>& arrivals) {
        poll.start(m_road, count, t0);
        TimePoint now = t0;
        std::size_t next = 0;
        while (poll.running()) {
            const TimePoint due = *poll.nextDeadline();
            if (next < arrivals.size() && t0 + arrivals[next].at < due) {
                now = t0 + arrivals[next].at;
                if (m_road == Road::Socket)
                    poll.onSocket(arrivals[next].bytes);
                else
                    poll.onSerial(arrivals[next].bytes);
                ++next;
                continue;
            }
            now = std::max(now, due);
            poll.onTime(now);
        }
        end = now;
    }

    std::string queries() const {
        std::string out;
        for (const auto& q : asked) out += (out.empty() ? "" : " ") + q;
        return out;
    }

    HitScorePoll::ScoreTable scores;
    std::vector<std::string> asked;
    std::vector<int> shown;
    bool waiting = false;
    TimePoint end{};
    Road m_road;
    HitScorePoll poll{scores,
                      {[this](int t, TimePoint now) {
                           asked.push_back(std::to_string(t) + "@" +
                                           std::to_string((now - t0) / std::chrono::milliseconds(1)));
                       },
                       [this] { return waiting; },
                       [this](int t) { shown.push_back(t); },
                       {}}};
};

const std::string EA = "\xEA";

TEST(HitScorePoll, OnTheSerialRadioBytesAddUpAndTheNextQueryFollowsAWholeReplyAtOnce) {
    PollRun r(Road::SerialRadio);
    r.run(5, {{10ms, EA + "\x05"},  // 1: whole at once
              {100ms, "\xEB"},
              {110ms, "\x07"},  // 2: foreign first byte: old score stays
              {120ms, EA},
              {140ms, std::string(1, '\0')},  // 3: two pieces add up: score 0
              {200ms, EA + "\xFF\xEA\x01"},   // 4: what follows a whole reply is left
              {250ms, "\x03"}});              // 5: one byte in time, nothing more
    EXPECT_EQ(r.queries(), "1@0 2@10 3@110 4@140 5@200");
    EXPECT_EQ(r.scores[1], "5");
    EXPECT_EQ(r.scores[2], "9");
    EXPECT_EQ(r.scores[3], "0");
    EXPECT_EQ(r.scores[4], "255");
    EXPECT_EQ(r.scores[5], "");
    EXPECT_EQ(r.end, t0 + 350ms);  // the last target's 0.15 s ran out: the wait ends on the dot
    EXPECT_EQ(r.shown, (std::vector<int>{1, 2, 3, 4, 5}));
}

TEST(HitScorePoll, OnTheSocketAReplyMustArriveWholeAndEachChunkReplacesTheLast) {
    PollRun r(Road::Socket);
    r.run(4, {{5ms, EA + "\x11"},  // 1: whole
              {10ms, EA},
              {20ms, "\x02"},  // 2: two single bytes never add up
              {400ms, EA + std::string("\x03\x00", 2)},
              {420ms, EA + "\x06"},   // 3: three bytes, then a whole one
              {700ms, "\x01\x02"}});  // 4: a whole reply of another kind
    EXPECT_EQ(r.queries(), "1@0 2@5 3@355 4@420");
    EXPECT_EQ(r.scores[1], "17");
    EXPECT_EQ(r.scores[2], "9");
    EXPECT_EQ(r.scores[3], "6");
    EXPECT_EQ(r.scores[4], "");
    EXPECT_EQ(r.end, t0 + 700ms);
}

TEST(HitScorePoll, WithNoCarrierEachTargetWaitsItsFullTime) {
    PollRun r(Road::NoCarrier);
    r.run(3, {{10ms, EA + "\x05"}});  // nothing is read on no carrier
    EXPECT_EQ(r.queries(), "1@0 2@350 3@700");
    EXPECT_EQ(r.end, t0 + 1050ms);
    EXPECT_EQ(r.scores[1], "");
}

TEST(HitScorePoll, AQueryStillWaitingForTheLinkGetsItsWaitAgainAndAStoppedPollKeepsWhatItRead) {
    PollRun r(Road::Socket);
    r.waiting = true;
    r.poll.start(Road::Socket, 3, t0);
    r.poll.onTime(t0 + 350ms);  // the link is still connecting: the wait starts again
    EXPECT_EQ(*r.poll.nextDeadline(), t0 + 700ms);
    r.waiting = false;
    r.poll.onSocket(EA + "\x08");
    EXPECT_EQ(*r.poll.nextDeadline(), t0);  // whole: due at once
    r.poll.onTime(t0 + 400ms);
    r.poll.start(Road::Socket, 3, t0 + 400ms);  // ignored while a poll runs
    EXPECT_EQ(r.poll.target(), 2);
    r.poll.abandon();
    EXPECT_FALSE(r.poll.running());
    EXPECT_FALSE(r.poll.nextDeadline());
    r.poll.onSocket(EA + "\x01");
    r.poll.onTime(t0 + 2s);
    EXPECT_EQ(r.queries(), "1@0 2@400");
    EXPECT_EQ(r.scores[1], "8");
    EXPECT_EQ(r.scores[2], "9");
}

}  // namespace
}  // namespace halvane::testing
