// Save of the score grid: a comma delimited or tab delimited text file, or a workbook.

#include <array>
#include <filesystem>

#include "authoring/operator.h"
#include "scores/hit_scores.h"
#include "scores/score_files.h"
#include "text/system_files.h"

namespace halvane {

namespace {
constexpr const char* kSaveFilter =
    "Comma Delimited (*.csv)|*.csv|Tab Delimited (*.txt)|*.txt|Excel (*.xls)|*.xls";
enum Format { Csv = 1, Txt = 2, Xls = 3 };
constexpr std::array<const char*, 3> kExtensions = {".csv", ".txt", ".xls"};

// The format is the filter the operator left selected; a dialog that does not say leaves it to the
// name's extension, and to comma delimited after that.
int formatOf(const ChosenFile& file) {
    if (file.filterIndex >= Csv && file.filterIndex <= Xls) return file.filterIndex;
    const std::string extension = std::filesystem::path(file.fileName).extension().string();
    for (int f = Csv; f <= Xls; ++f)
        if (extension == kExtensions[static_cast<std::size_t>(f - 1)]) return f;
    return Csv;
}

std::string cannotSave(const std::string& path, const std::string& why) {
    return "The scores could not be saved to " + path + (why.empty() ? "." : ": " + why);
}

// The file is replaced whole or not at all, keeping the old file's permissions.
std::string saveText(const std::string& path, const std::string& bytes) {
    const FileBytes old = loadFile(path);
    const std::optional<unsigned> mode =
        old.state == FileBytes::State::Missing ? std::nullopt : std::optional(old.mode);
    return replaceFile(path, bytes, mode) ? "" : cannotSave(path, "");
}
}  // namespace

// Saving scores leaves FilePath alone: it names the Program, and a later Save must not go to the
// score file. Cancel writes nothing, whatever an earlier save chose.
void FrmHitScores::CmdSave_Click() {
    const auto chosen = m_operator.chooseSaveFile({kSaveFilter, Csv});
    if (!chosen || chosen->fileName.empty()) return;
    const int format = formatOf(*chosen);
    std::string path = chosen->fileName;
    if (!std::filesystem::path(path).has_extension())
        path += kExtensions[static_cast<std::size_t>(format - 1)];

    std::string error;
    if (format == Csv) {
        error = saveText(path, scoresCsv(Grid));
    } else if (format == Txt) {
        error = saveText(path, scoresTxt(Grid));
    } else if (!m_workbooks) {
        error =
            "Excel workbooks cannot be written here; save the scores as Comma Delimited or Tab Delimited.";
    } else {
        const std::string why = m_workbooks->write(path, scoreCells(Grid));
        if (!why.empty()) error = cannotSave(path, why);
    }
    if (!error.empty()) m_operator.tell(error, Caption);
}

}  // namespace halvane
