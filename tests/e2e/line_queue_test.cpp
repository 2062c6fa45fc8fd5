// The 9600-baud line time on a virtual clock: exact over long runs, idle gaps not banked.
#include <gtest/gtest.h>

#include "sim/server/line_queue.h"

namespace halvane::sim {
namespace {

using namespace std::chrono_literals;
constexpr auto kByte = LineQueue::ByteTimes(1);
const TimePoint t0{10s};

// `bytes` byte times after t0, to the nanosecond below.
TimePoint at(double bytes) {
    return t0 + std::chrono::duration_cast<Clock::duration>(
                    std::chrono::duration<double, LineQueue::ByteTimes::period>(bytes));
}

TEST(LineQueue, PacedBytesCrossOneByteTimeApartFromWhenTheLineIsFree) {
    LineQueue line(true);
    line.push("abc", t0);
    EXPECT_EQ(line.ready(t0), "");
    EXPECT_EQ(line.nextReady(t0), t0 + std::chrono::ceil<Clock::duration>(kByte));
    EXPECT_EQ(line.ready(t0 + std::chrono::floor<Clock::duration>(kByte)), "");
    EXPECT_EQ(line.ready(t0 + std::chrono::ceil<Clock::duration>(kByte)), "a");
    EXPECT_EQ(line.ready(at(2.5)), "ab");
    line.consume(1);
    line.push("d", at(2.5));  // joins the queue: back to back, fourth byte time
    EXPECT_EQ(line.ready(at(2.5)), "b");
    EXPECT_EQ(line.ready(at(3.9)), "bc");
    EXPECT_EQ(line.ready(at(4) + 1ns), "bcd");
    line.consume(3);
    EXPECT_TRUE(line.empty());

    // An idle line does not bank time: after a gap the next byte starts when it is handed over.
    const TimePoint later = t0 + 1s;
    line.push("e", later);
    EXPECT_EQ(line.ready(later + 900us), "");
    EXPECT_EQ(line.nextReady(later), later + std::chrono::ceil<Clock::duration>(kByte));

    // 9600 bytes take ten seconds to the nanosecond, with no rounding creeping in per byte.
    LineQueue longLine(true);
    longLine.push(std::string(9600, 'x'), t0);
    EXPECT_EQ(longLine.ready(t0 + 10s - 1ns).size(), 9599u);
    EXPECT_EQ(longLine.ready(t0 + 10s).size(), 9600u);
    longLine.consume(9000);
    EXPECT_EQ(longLine.ready(t0 + 10s).size(), 600u);
}

}  // namespace
}  // namespace halvane::sim
