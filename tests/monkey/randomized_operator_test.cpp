// The randomized operator with fixed seeds on the real main window: every promise holds through each
// run, the runs together reach the dialogs, the file round trip and the transmitter, and the checks
// do notice a broken promise.

#include <QtTest>
#include <cstdio>
#include <memory>
#include <stdexcept>

#include "console/main_window.h"
#include "operator_script.h"
#include "platform/guarded_application.h"

using namespace halvane;

namespace {
std::string report(const monkey::RunResult& result) {
    std::string text;
    for (const auto& finding : result.findings) text += "\n  finding: " + finding;
    text += "\n  after:";
    for (const auto& line : result.trace) text += "\n    " + line;
    return text;
}
}  // namespace

class RandomizedOperatorTest : public QObject {
    Q_OBJECT

    std::unique_ptr<monkey::ScratchRange> range;
    monkey::RunResult reached;

  private slots:
    void initTestCase() { range = std::make_unique<monkey::ScratchRange>(); }
    void cleanupTestCase() { range.reset(); }

    void everyPromiseHolds_data() {
        QTest::addColumn<unsigned>("seed");
        for (unsigned seed : {11u, 23u, 37u, 41u, 59u, 73u, 88u, 97u})
            QTest::newRow(qPrintable(QString("seed %1").arg(seed))) << seed;
    }
    void everyPromiseHolds() {
        QFETCH(unsigned, seed);
        monkey::OperatorScript script(*range, monkey::bytesFromSeed(seed, 240));
        const monkey::RunResult result = script.run(30);
        // QtTest cuts long messages short: the whole trace goes to the error output.
        if (!result.findings.empty() || qEnvironmentVariableIsSet("HALVANE_MONKEY_TRACE"))
            std::fputs((report(result) + "\n").c_str(), stderr);
        QVERIFY2(result.findings.empty(), result.findings.empty() ? "" : result.findings.front().c_str());
        reached.events += result.events;
        reached.answers += result.answers;
        reached.programsShown += result.programsShown;
        reached.savesReadBack += result.savesReadBack;
    }

    // A run that never got past the menu bar would pass the checks too.
    void theRunsReachedTheConsole() {
        QVERIFY2(reached.events >= 100, qPrintable(QString::number(reached.events)));
        QVERIFY2(reached.answers >= 50, qPrintable(QString::number(reached.answers)));
        QVERIFY2(reached.programsShown >= 30, qPrintable(QString::number(reached.programsShown)));
        QVERIFY2(reached.savesReadBack >= 1, qPrintable(QString::number(reached.savesReadBack)));
    }

    void theChecksNoticeABrokenPromise() {
        // Settings, then File > New, answered with OK: a Program of 30 seconds.
        monkey::OperatorScript script(*range, std::string("\0\0\0\0\x3c\0", 6));
        QVERIFY(script.run(1).findings.empty());
        QVERIFY(script.form().grid());

        script.form().state().SelRow[1] = 99;
        const auto stale = script.check();
        QCOMPARE(stale.size(), std::size_t(1));
        QVERIFY(stale[0].starts_with("SelRow(1) = 99"));
        script.form().state().SelRow[1] = 0;

        QTimer::singleShot(0, [] { throw std::logic_error("no such cell"); });
        QTest::qWait(50);
        QCOMPARE(script.check(), std::vector<std::string>{
                                     "an exception that is no Fault left an event handler: no such cell"});
    }
};

int main(int argc, char** argv) {
    monkey::prepareEnvironment();
    app::GuardedApplication app(argc, argv);
    monkey::printTraceOnDeath();
    // A fuzzer's input replayed, with its trace: HALVANE_MONKEY_INPUT=crash-... randomized_operator_test
    if (QFile input(qEnvironmentVariable("HALVANE_MONKEY_INPUT")); input.open(QIODevice::ReadOnly)) {
        monkey::ScratchRange range;
        const auto result =
            monkey::OperatorScript(range, input.readAll().toStdString()).run(monkey::kEventsPerInput);
        std::fputs((report(result) + "\n").c_str(), stderr);
        return result.findings.empty() ? 0 : 1;
    }
    RandomizedOperatorTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "randomized_operator_test.moc"
