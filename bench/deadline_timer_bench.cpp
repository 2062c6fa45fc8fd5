// Lateness of a schedule kept by the console's one timer: a machine that wants to be woken every period
// (one second by default, as the run window's whole seconds), and how late each wake-up came.
// Usage: deadline_timer_bench [period-ms] [count]

#include <QTimer>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "platform/guarded_application.h"

using namespace halvane;
using Clock = std::chrono::steady_clock;

namespace {

struct Schedule : TimedMachine {
    Clock::duration period;
    TimePoint next;
    int left;
    std::vector<double> lateMs;
    std::optional<TimePoint> nextDeadline() const override {
        return left > 0 ? std::optional(next) : std::nullopt;
    }
    void onTime(TimePoint now) override {
        lateMs.push_back(std::chrono::duration<double, std::milli>(now - next).count());
        next += period;
        if (--left == 0) QCoreApplication::quit();
    }
};

double percentile(std::vector<double> values, double p) {
    std::sort(values.begin(), values.end());
    return values[std::min(values.size() - 1,
                           static_cast<std::size_t>(p * static_cast<double>(values.size())))];
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    app::GuardedApplication application(argc, argv);
    Schedule schedule;
    schedule.period = std::chrono::milliseconds(argc > 1 ? std::atoi(argv[1]) : 1000);
    schedule.left = argc > 2 ? std::atoi(argv[2]) : 60;
    schedule.next = Clock::now() + schedule.period;
    // Some traffic beside it, as a window that paints: events that move no deadline.
    QTimer busy;
    busy.callOnTimeout([] {});
    busy.start(7);
    application.deadlines().add(schedule);
    application.exec();
    application.deadlines().remove(schedule);
    std::printf("wake-ups %zu, lateness ms: p50 %.3f  p99 %.3f  max %.3f\n", schedule.lateMs.size(),
                percentile(schedule.lateMs, 0.5), percentile(schedule.lateMs, 0.99),
                *std::max_element(schedule.lateMs.begin(), schedule.lateMs.end()));
    return 0;
}
