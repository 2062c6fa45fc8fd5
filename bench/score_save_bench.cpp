// Save of the full hit score grid (200 targets, every one scored) in each of the three formats,
// through the window's Save with the dialog answered at once; the file's size as a counter.

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>

#include "authoring/operator.h"
#include "gsf_workbook_writer.h"
#include "scores/hit_scores.h"

namespace {

using namespace halvane;
namespace fs = std::filesystem;

// Chooses the same file every time and says nothing else; a message means the save failed.
class FixedChoice : public Operator {
  public:
    explicit FixedChoice(ChosenFile file) : m_file(std::move(file)) {}
    void tell(const std::string&, const std::string&) override { std::abort(); }
    Answer ask(const std::string&, const std::string&, Buttons) override { return Answer::Cancel; }
    std::optional<std::string> inputBox(const std::string&, const std::string&, const std::string&) override {
        return std::nullopt;
    }
    std::optional<ChosenFile> chooseOpenFile(const FileDialogSetup&) override { return std::nullopt; }
    std::optional<ChosenFile> chooseSaveFile(const FileDialogSetup&) override { return m_file; }
    void openDocument(const std::string&) override {}
    void show(Window&, Modality) override {}
    std::string showPopup(const std::string&, const std::vector<PopupItem>&) override { return ""; }

  private:
    ChosenFile m_file;
};

void BM_SaveFullGrid(benchmark::State& bench) {
    static const char* const kNames[] = {"scores.csv", "scores.txt", "scores.xls"};
    const int filter = static_cast<int>(bench.range(0));
    const fs::path file = fs::temp_directory_path() / (std::string("halvane-bench-") + kNames[filter - 1]);
    FixedChoice op({file.string(), file.filename().string(), filter});
    SharedState state;
    GsfWorkbookWriter workbooks;
    FrmHitScores window(state, nullptr, nullptr, op, &workbooks);
    window.Load();
    for (int i = 1; i < FrmHitScores::kGridRows; ++i)
        window.Grid.setTextMatrix(i, 1, std::to_string(i * 7 % 256));
    for (auto _ : bench) window.CmdSave_Click();
    bench.SetLabel(kNames[filter - 1]);
    bench.counters["bytes"] = static_cast<double>(fs::file_size(file));
    fs::remove(file);
}
BENCHMARK(BM_SaveFullGrid)->DenseRange(1, 3)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
