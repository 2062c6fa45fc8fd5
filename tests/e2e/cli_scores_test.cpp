// halvane-cli scores against the simulated transmitter and radio: hits registered in the simulator come
// back through both roads and land in a CSV file and a workbook; the refusals; the clear frame.
#ifdef HALVANE_CLI_BINARY
#include <gtest/gtest.h>

#include <fstream>

#include <cstdio>

#include "e2e_support.h"
#include "served_range.h"

namespace halvane::e2e {
namespace {

// What the command wrote on stdout and stderr, and its exit status.
std::pair<std::string, int> scores(const ScratchDir& scratch, const std::string& settings,
                                   std::vector<std::string> args) {
    const auto config = scratch.path() / "hvn.cfg";
    std::ofstream(config) << "[Settings]\r\nTargets=5\r\nLM-Series=True\r\n" << settings;
    args.insert(args.begin(), {"--config", config.string(), "scores"});
    ChildProcess cli(HALVANE_CLI_BINARY, args);
    std::string output = readFor(cli.output(), 1 << 16, std::chrono::milliseconds(8000));
    return {output, cli.exitStatus()};
}

// What a shell command prints.
std::string shell(const std::string& command) {
    std::string out;
    if (FILE* pipe = ::popen(command.c_str(), "r")) {
        char buffer[4096];
        for (std::size_t n; (n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;) out.append(buffer, n);
        ::pclose(pipe);
    }
    return out;
}

TEST(CliScores, HitsComeBackThroughTheTransmitterAndTheRadioIntoCsvAndAWorkbook) {
    ScratchDir scratch;
    Served transmitter(5), radio(5);
    for (Served* s : {&transmitter, &radio}) {
        s->hit(2, 3);
        s->hit(4, 12);
    }
    const auto [block, blockStatus] = scores(
        scratch, "LMC-Radio=True\r\n", {"--from", "transmitter", "--device", transmitter.transmitter()});
    EXPECT_EQ(blockStatus, 0);
    EXPECT_EQ(block, "\"Target Num\",\"Hit Score\"\r\n\"2\",\"3\"\r\n\"4\",\"C\"\r\n");

    const std::string device = radio.radio();
    const auto [round, roundStatus] =
        scores(scratch, "USB-Radio=True\r\n", {"--from", "radio", "--device", device});
    EXPECT_EQ(roundStatus, 0);
    EXPECT_EQ(round,
              "\"Target Num\",\"Hit Score\"\r\n\"1\",\"0\"\r\n\"2\",\"3\"\r\n\"3\",\"0\"\r\n\"4\",\"12\"\r\n"
              "\"5\",\"0\"\r\n");

    const auto workbook = (scratch.path() / "scores.xls").string();
    const auto [none, xlsStatus] =
        scores(scratch, "USB-Radio=True\r\n",
               {"--from", "radio", "--device", device, "--format", "xls", "-o", workbook});
    EXPECT_EQ(xlsStatus, 0) << none;
    const std::string read = shell(
        "/usr/bin/python3 -c \"import xlrd,sys; s=xlrd.open_workbook(sys.argv[1]).sheet_by_name('Sheet1'); "
        "print('|'.join(s.cell_value(r, c) for r in range(s.nrows) for c in range(s.ncols)))\" " +
        workbook);
    EXPECT_EQ(read, "Target Num|Hit Score|1|0|2|3|3|0|4|12|5|0\n");
}

TEST(CliScores, RefusalsFailuresAndTheClearFrame) {
    ScratchDir scratch;
    Served silent(5), radio(5);
    sim::Faults quiet;
    quiet.silent = true;
    const std::string transmitter = silent.transmitter(quiet);
    const struct {
        std::string settings;
        std::vector<std::string> args;
        int status;
        const char* said;
    } cases[] = {
        {"USB-Radio=True\r\n", {"--from", "transmitter"}, 2, "no transmitter"},
        {"LMC-Radio=True\r\n", {"--from", "radio"}, 2, "no radio"},
        {"USB-Radio=True\r\n", {"--from", "radio", "--format", "xls"}, 2, "-o"},
        {"LMC-Radio=True\r\n", {"--from", "transmitter", "--device", transmitter}, 1, "No Hit Scores in LMC"},
        {"USB-Radio=True\r\nComPort= 9\r\n",
         {"--from", "radio", "--device", "/dev/absent"},
         1,
         "in use or invalid"},
    };
    for (const auto& c : cases) {
        const auto [said, status] = scores(scratch, c.settings, c.args);
        EXPECT_EQ(status, c.status) << said;
        EXPECT_NE(said.find(c.said), std::string::npos) << said;
        EXPECT_EQ(said.find("Target Num"), std::string::npos) << "nothing on stdout: " << said;
    }
    const auto [cleared, status] =
        scores(scratch, "USB-Radio=True\r\n", {"--clear", "--device", radio.radio()});
    EXPECT_EQ(status, 0) << cleared;
    EXPECT_NE(cleared.find("Clear Scores from Targets? OK\n"), std::string::npos) << "the answer it gave: " << cleared;
    EXPECT_EQ(radio.bytes(2), "\xFB\xE7");
}

}  // namespace
}  // namespace halvane::e2e
#endif
