// How punctually a Program is played: a 120-second Program on 200 targets, every target changing face
// every second (400 bytes a step on the serial radio), played end to end against the simulated radio
// on a real pseudo-terminal, by halvane-cli run or by the console's run window (offscreen). The radio
// notes when each byte reaches it; the first byte of each step is compared with the ideal one-second
// schedule from the first step on.
//
//   run_lateness cli PATH-TO-halvane-cli [--pace]
//   run_lateness window [--pace]
//
// With --pace the line crosses at 9600 baud, and the spread of each step (first byte to last) is
// compared with the line time of its bytes. LATENESS_DUMP=1 prints each step's lateness as well.

#include <QApplication>
#include <QPushButton>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <mutex>
#include <thread>

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "authoring/program_file.h"
#include "authoring/startup.h"
#include "links/port_names.h"
#include "platform/guarded_application.h"
#include "platform/qt_operator.h"
#include "platform/qt_serial_port.h"
#include "range/range_running.h"
#include "range_running_view.h"
#include "sim/devices.h"
#include "sim/server/sim_server.h"

using namespace halvane;
using namespace std::chrono;

namespace {

constexpr int kTargets = 200;
constexpr int kSeconds = 120;

// The radio, noting when each chunk reaches it.
class NotingDevice : public sim::Device {
  public:
    explicit NotingDevice(std::unique_ptr<sim::Device> inner) : m_inner(std::move(inner)) {}
    std::string name() const override { return m_inner->name(); }
    void receive(std::string_view bytes, sim::TimePoint now) override {
        {
            std::lock_guard lock(m_mutex);
            m_chunks.push_back({now, bytes.size()});
        }
        m_inner->receive(bytes, now);
    }
    std::vector<std::string> takeDue(sim::TimePoint now) override { return m_inner->takeDue(now); }
    std::optional<sim::TimePoint> nextDue() const override { return m_inner->nextDue(); }
    std::vector<std::pair<sim::TimePoint, std::size_t>> chunks() {
        std::lock_guard lock(m_mutex);
        return m_chunks;
    }

  private:
    std::unique_ptr<sim::Device> m_inner;
    std::mutex m_mutex;
    std::vector<std::pair<sim::TimePoint, std::size_t>> m_chunks;
};

void writeFiles(const std::string& config, const std::string& program) {
    std::ofstream(config)
        << "[Settings]\r\nTargets=" << kTargets
        << "\r\nCols=20\r\nStart Location=Top\r\nIcon=Large\r\nUSB-Radio=True\r\nComPort= 1\r\n";
    std::ofstream out(program, std::ios::binary);
    out << "\"Target\"," << kTargets << "\r\n\"Groups\",\"0\"\r\n\"Seconds\"," << kSeconds << "\r\n";
    for (int row = 0; row <= kSeconds; ++row)
        for (int target = 1; target <= kTargets; ++target)
            out << ((row + target) % 2 ? "\"Friend\"" : "\"Foe\"") << "\r\n";
}

double ms(nanoseconds d) {
    return duration<double, std::milli>(d).count();
}

double percentile(std::vector<double> v, double p) {
    std::sort(v.begin(), v.end());
    return v[static_cast<std::size_t>(p * static_cast<double>(v.size() - 1) + 0.5)];
}

// Lateness of each step's first byte against a one-second schedule from `origin`.
std::vector<double> lateness(const std::vector<std::pair<sim::TimePoint, sim::TimePoint>>& steps,
                             sim::TimePoint origin) {
    std::vector<double> late;
    for (std::size_t k = 0; k < steps.size(); ++k)
        late.push_back(ms(steps[k].first - (origin + seconds(static_cast<long>(k)))));
    return late;
}

void printLateness(const char* against, const std::vector<double>& late) {
    std::printf("lateness against %s: p50 %.3f ms, p99 %.3f ms, max %.3f ms\n", against,
                percentile(late, 0.5), percentile(late, 0.99), *std::max_element(late.begin(), late.end()));
}

void report(const std::vector<std::pair<sim::TimePoint, std::size_t>>& chunks, bool paced,
            std::optional<sim::TimePoint> startedAt) {
    // A step is the chunks that follow one another by less than half a second.
    std::vector<std::pair<sim::TimePoint, sim::TimePoint>> steps;  // first and last byte
    std::vector<std::size_t> sizes;
    for (const auto& [at, size] : chunks) {
        if (steps.empty() || at - steps.back().second > 500ms) {
            steps.push_back({at, at});
            sizes.push_back(0);
        }
        steps.back().second = at;
        sizes.back() += size;
    }
    if (steps.empty()) {
        std::printf("no step reached the radio\n");
        return;
    }
    std::printf("steps %zu, bytes of the first %zu\n", steps.size(), sizes[0]);
    // The schedule that fits the steps best from below: the earliest step is on time by definition, so
    // the figures are the spread of the steps, whatever the constant delay of the line.
    sim::TimePoint fitted = steps[0].first;
    for (std::size_t k = 0; k < steps.size(); ++k)
        fitted = std::min(fitted, steps[k].first - seconds(static_cast<long>(k)));
    printLateness("the best-fitting schedule", lateness(steps, fitted));
    if (std::getenv("LATENESS_DUMP"))
        for (const double late : lateness(steps, fitted)) std::printf("%.3f\n", late);
    if (startedAt) printLateness("the click on Start", lateness(steps, *startedAt));
    if (paced) {
        // From the first byte's arrival to the last's, the line carries the other bytes back to back.
        std::vector<double> spread;
        double worst = 0;
        for (std::size_t k = 0; k < steps.size(); ++k) {
            const double line = (static_cast<double>(sizes[k]) - 1) * 10.0 / 9600.0 * 1000.0;
            const double off = std::abs(ms(steps[k].second - steps[k].first) - line) / line * 100;
            worst = std::max(worst, off);
        }
        std::printf("spread of a step against its line time: worst %.2f %% off\n", worst);
    }
}

int runCli(const std::string& cli, const std::string& device, const std::string& config,
           const std::string& program) {
    const pid_t pid = ::fork();
    if (pid == 0) {
        const int devnull = ::open("/dev/null", O_WRONLY);
        ::dup2(devnull, STDOUT_FILENO);
        ::execl(cli.c_str(), cli.c_str(), "--config", config.c_str(), "run", program.c_str(), "--device",
                device.c_str(), static_cast<char*>(nullptr));
        ::_exit(127);
    }
    int status = 0;
    ::waitpid(pid, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128;
}

int runWindow(int argc, char** argv, const std::string& device, const std::string& config,
              const std::string& program, std::optional<sim::TimePoint>& startedAt) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    app::GuardedApplication application(argc, argv);
    SharedState state;
    readStartup(config, state);
    state.FilePath = program;
    std::unique_ptr<ProgramGrid> grid;
    if (const auto error = readProgramFile(state, standaloneHost(state, grid))) {
        std::fprintf(stderr, "%s\n", error->message().c_str());
        return 1;
    }
    PortNames names;
    names.setDevice(1, device);
    app::QtSerialPort port;
    struct : PositionStore {
        std::vector<std::pair<std::string, std::string>> GetAllSettings(const std::string&,
                                                                        const std::string&) override {
            return {};
        }
        void SaveSetting(const std::string&, const std::string&, const std::string&,
                         const std::string&) override {}
    } positions;
    app::QtOperator op;
    frmRangeRunning model(state, *grid, port, names, nullptr, op, positions);
    model.Load();
    app::RangeRunningView view(model);
    view.show();
    view.findChild<QPushButton*>("BtnConnect")->click();
    startedAt = std::chrono::steady_clock::now();
    view.findChild<QPushButton*>("BtnStart")->click();
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, [&] {
        if (model.runState() == frmRangeRunning::RunState::Finished) application.quit();
    });
    watch.start(100);
    application.exec();
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2 || (std::string(argv[1]) == "cli" && argc < 3)) {
        std::fprintf(stderr, "usage: run_lateness cli PATH-TO-halvane-cli [--pace] | window [--pace]\n");
        return 2;
    }
    const std::string mode = argv[1];
    const bool paced = std::string(argv[argc - 1]) == "--pace";
    char folder[] = "/tmp/halvane-lateness-XXXXXX";
    if (!::mkdtemp(folder)) return 1;
    const std::string config = std::string(folder) + "/hvn.cfg";
    const std::string program = std::string(folder) + "/every-second.hvn";
    writeFiles(config, program);

    sim::Range range(kTargets);
    sim::SimServer server(sim::SimServer::Options{paced, {}});
    auto noting = std::make_unique<NotingDevice>(sim::makeRadioModem(range, {}));
    NotingDevice& radio = *noting;
    const std::string device = server.addPty("radio", std::move(noting));
    std::thread serving([&] { server.run(); });

    std::optional<sim::TimePoint> startedAt;
    const int result = mode == "cli" ? runCli(argv[2], device, config, program)
                                     : runWindow(argc, argv, device, config, program, startedAt);
    std::this_thread::sleep_for(600ms);  // the last step's bytes cross a paced line
    server.stop();
    serving.join();
    std::printf("%s%s: exit %d\n", mode.c_str(), paced ? ", paced line" : "", result);
    report(radio.chunks(), paced, startedAt);
    std::filesystem::remove_all(folder);
    return result;
}
