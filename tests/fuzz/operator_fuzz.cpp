// The randomized operator on the console's real main window, driven by the fuzzer's bytes: a crash,
// a sanitizer report, a hang or a broken promise of the console is a finding. Each input is one run
// on a fresh window over a fresh scratch folder.

#include <QCoreApplication>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "operator_script.h"
#include "platform/guarded_application.h"

using namespace halvane;

namespace {
monkey::ScratchRange* range = nullptr;
long inputs = 0;
long events = 0;

void tally() {
    std::fprintf(stderr, "operator_fuzz: %ld inputs, %ld operator events\n", inputs, events);
}
}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    monkey::prepareEnvironment();
    // Qt keeps the arguments for the life of the application; the fuzzer's own are not for it.
    static int argc = 1;
    static char name[] = "operator_fuzz";
    static char* argv[] = {name, nullptr};
    // Never destroyed: Qt cannot take its application object down from an exit handler.
    static auto* application = new app::GuardedApplication(argc, argv);
    (void)application;
    range = new monkey::ScratchRange;
    monkey::printTraceOnDeath();
    std::atexit(tally);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    monkey::OperatorScript script(*range, std::string(reinterpret_cast<const char*>(data), size));
    const monkey::RunResult result = script.run(monkey::kEventsPerInput);
    ++inputs;
    events += result.events;
    if (inputs % 100 == 0) tally();
    const bool traced = std::getenv("HALVANE_MONKEY_TRACE") != nullptr;
    if (result.findings.empty() && !traced) return 0;
    std::fputs("Operator script:\n", stderr);
    for (const auto& line : result.trace) std::fprintf(stderr, "  %s\n", line.c_str());
    if (result.findings.empty()) return 0;
    for (const auto& finding : result.findings) std::fprintf(stderr, "FINDING: %s\n", finding.c_str());
    std::abort();
}
