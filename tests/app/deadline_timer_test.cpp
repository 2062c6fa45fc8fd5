// The machines' one timer: the earliest deadline of all wins, an event that moves a deadline re-arms it,
// and no machine is woken before its time.

#include <QtTest>
#include <chrono>

#include "platform/guarded_application.h"

using namespace halvane;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

namespace {

// Waits for one moment at a time and keeps the moments it was woken at.
struct Machine : TimedMachine {
    std::optional<TimePoint> deadline;
    std::vector<TimePoint> wokeAt;
    std::optional<TimePoint> nextDeadline() const override { return deadline; }
    void onTime(TimePoint now) override {
        wokeAt.push_back(now);
        deadline.reset();
    }
};

}  // namespace

class DeadlineTimerTest : public QObject {
    Q_OBJECT

  private slots:
    void theEarliestWinsAndAnEventThatMovesADeadlineRearms() {
        app::DeadlineTimer& timer = app::GuardedApplication::instance()->deadlines();
        Machine late, early;
        const TimePoint start = Clock::now();
        late.deadline = start + 150ms;
        early.deadline = start + 40ms;
        timer.add(late);
        timer.add(early);
        QCOMPARE(timer.armedFor(), early.deadline);

        QTRY_COMPARE_WITH_TIMEOUT(early.wokeAt.size(), std::size_t(1), 1000);
        QVERIFY(early.wokeAt[0] >= start + 40ms);
        QVERIFY(late.wokeAt.empty());
        QCOMPARE(timer.armedFor(), late.deadline);

        // Bytes come, say, and the late machine now wants to be woken sooner: no call to the timer.
        const TimePoint moved = Clock::now() + 20ms;
        QTimer::singleShot(0, [&] { late.deadline = moved; });
        QTRY_COMPARE_WITH_TIMEOUT(timer.armedFor(), std::optional(moved), 1000);
        QTRY_COMPARE_WITH_TIMEOUT(late.wokeAt.size(), std::size_t(1), 1000);
        QVERIFY(late.wokeAt[0] >= moved);
        QVERIFY(late.wokeAt[0] < start + 150ms);

        timer.remove(late);
        timer.remove(early);
        QCOMPARE(timer.armedFor(), std::nullopt);
    }
};

int main(int argc, char** argv) {
    app::GuardedApplication application(argc, argv);
    DeadlineTimerTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "deadline_timer_test.moc"
