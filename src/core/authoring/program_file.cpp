#include "authoring/program_file.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string_view>

#include "authoring/grid_setup.h"
#include "text/conversions.h"
#include "text/fault.h"
#include "text/input_fields.h"

namespace halvane {

namespace fs = std::filesystem;

std::string ProgramFileError::message() const {
    std::string text = "Could not read or write the Program file \"" + file + "\"";
    if (line > 0) text += " at line " + std::to_string(line);
    return text + ": " + reason;
}

namespace {

struct FileCloser {
    void operator()(std::FILE* f) const {
        if (f) std::fclose(f);
    }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

class LoadFailure : public Fault {
  public:
    LoadFailure(int line, const std::string& reason) : Fault(reason), line(line) {}
    int line;
};

// Buffered output in the quoted, comma-separated form of the old sequential writer.
class FieldWriter {
  public:
    explicit FieldWriter(std::FILE* file) : m_file(file) { m_buffer.reserve(kBlock + 64); }
    void quoted(std::string_view text) {
        m_buffer.push_back('"');
        m_buffer.append(text);
        m_buffer.push_back('"');
    }
    void number(long value) { m_buffer.append(std::to_string(value)); }
    void comma() { m_buffer.push_back(','); }
    bool endLine() {
        m_buffer.append("\r\n");
        return m_buffer.size() < kBlock || flush();
    }
    bool flush() {
        const bool ok = std::fwrite(m_buffer.data(), 1, m_buffer.size(), m_file) == m_buffer.size();
        m_buffer.clear();
        return ok;
    }

  private:
    static constexpr std::size_t kBlock = 1 << 20;
    std::FILE* m_file;
    std::string m_buffer;
};

bool writeAll(FieldWriter& out, const SharedState& state, const ProgramGrid& grid) {
    out.quoted("Target");
    out.comma();
    out.number(state.NumTargets);
    out.endLine();
    out.quoted("Groups");
    out.comma();
    if (state.UseGroups) {
        out.number(state.NumGroups);
        out.endLine();
        for (int n = 1; n <= state.NumTargets; ++n) {
            out.number(n);
            out.comma();
            out.number(n <= SharedState::kMaxTargets ? state.GroupNum[static_cast<std::size_t>(n)] : 0);
            out.endLine();
        }
    } else {
        out.quoted("0");
        out.endLine();
    }
    out.quoted("Seconds");
    out.comma();
    out.number(state.NumSeconds);
    if (!out.endLine()) return false;
    const int columns = programColumns(state);
    for (int r = 1; r <= state.NumSeconds; ++r)
        for (int c = 1; c <= columns; ++c) {
            out.quoted(grid.TextMatrix(r, c));
            if (!out.endLine()) return false;
        }
    return out.flush();
}

std::string systemError() {
    return std::strerror(errno);
}

}  // namespace

std::optional<ProgramFileError> writeProgramFile(const SharedState& state, const ProgramGrid& grid) {
    ProgramFileError error{state.FilePath, 0, {}};
    if (state.FilePath.empty()) {
        error.reason = "no file name was given.";
        return error;
    }
    // "Groups",0 reads back as a Program of targets, so groups without a single one cannot be written.
    if (state.UseGroups && state.NumGroups < 1) {
        error.reason = "the Program is set to groups, but no groups are set up.";
        return error;
    }
    const int columns = programColumns(state);
    if (state.NumSeconds + 1 > grid.Rows() || columns + 1 > grid.Cols()) {
        error.reason = "the Program on the screen does not have the " + std::to_string(state.NumSeconds) +
                       " seconds and " + std::to_string(columns) + " columns of the current setup.";
        return error;
    }
    std::error_code ec;
    fs::path target = fs::weakly_canonical(fs::path(state.FilePath), ec);
    if (ec) target = state.FilePath;
    fs::path temp = target;
    temp += ".saving";
    File file(std::fopen(temp.c_str(), "wb"));
    if (!file) {
        error.reason = systemError() + ".";
        return error;
    }
    FieldWriter out(file.get());
    const bool written = writeAll(out, state, grid);
    const bool closed = std::fclose(file.release()) == 0;
    if (!written || !closed) {
        error.reason = "the disk refused the data (" + systemError() + ").";
        fs::remove(temp, ec);
        return error;
    }
    if (fs::exists(target, ec)) fs::permissions(temp, fs::status(target, ec).permissions(), ec);
    fs::rename(temp, target, ec);
    if (ec) {
        error.reason = ec.message() + ".";
        fs::remove(temp, ec);
        return error;
    }
    return std::nullopt;
}

namespace {

text::InputFields::Field nextField(text::InputFields& in) {
    auto field = in.next();
    if (!field) throw LoadFailure(in.line(), "the file ends early.");
    return *field;
}

double numberField(text::InputFields& in) {
    const auto field = nextField(in);
    if (field.text.empty()) return 0;
    const auto value = text::strictNumber(field.text);
    if (!value) throw LoadFailure(field.line, "\"" + field.text + "\" is not a number.");
    return *value;
}

std::int16_t int16Field(text::InputFields& in, const char* what) {
    const int line = in.line();
    const auto value = text::toInt16(numberField(in));
    if (!value) throw LoadFailure(line, std::string("the ") + what + " is out of range.");
    return *value;
}

// A text field followed by a number, as in "Target",2.
std::int16_t labelledNumber(text::InputFields& in, const char* what) {
    nextField(in);
    return int16Field(in, what);
}

void writeCell(ProgramGrid& grid, int row, int col, const std::string& word) {
    if (word == words::Friend) {
        grid.setCellBackColor(row, col, colors::Friend);
    } else if (word == words::Foe) {
        grid.setCellBackColor(row, col, colors::Foe);
    } else if (word == words::Edge) {
        grid.setCellBackColor(row, col, colors::Edge);
    } else if (word == words::Down) {
        grid.setCellBackColor(row, col, colors::Down);
    } else if (word == words::Pause) {
        grid.MergeCells = 2;
        grid.setCellBackColor(row, col, colors::Pause);
        grid.setCellForeColor(row, col, colors::PauseText);
        grid.setMergeRow(row, true);
        grid.setCellAlignment(row, col, align::CenterCenter);
    }
    grid.setTextMatrix(row, col, word);
}

void readAll(SharedState& state, const ProgramLoadHost& host, text::InputFields& in) {
    state.NumTargets = labelledNumber(in, "number of targets");
    state.NumGroups = labelledNumber(in, "number of groups");
    if (state.NumGroups < 1) {
        state.UseGroups = false;
    } else {
        state.UseGroups = true;
        for (int n = 0; n < state.NumTargets; ++n) {
            const int line = in.line();
            const std::int16_t target = int16Field(in, "target number");
            const std::int16_t group = int16Field(in, "group number");
            if (target < 0 || target > SharedState::kMaxTargets)
                throw LoadFailure(line, "target " + std::to_string(target) + " is not 0 to " +
                                            std::to_string(SharedState::kMaxTargets) + ".");
            state.GroupNum[static_cast<std::size_t>(target)] = group;
        }
    }
    const int secondsLine = in.line();
    state.NumSeconds = labelledNumber(in, "length in seconds");
    ProgramGrid* grid = nullptr;
    try {
        grid = &host.recreateGrid();
    } catch (const Fault& fault) {
        throw LoadFailure(secondsLine, fault.what());
    }
    const int columns = programColumns(state);
    for (int r = 1; r <= state.NumSeconds; ++r) {
        grid->setRow(r);
        for (int c = 1; c <= columns; ++c) {
            grid->setCol(c);
            writeCell(*grid, r, c, nextField(in).text);
        }
    }
}

}  // namespace

ProgramLoadHost standaloneHost(SharedState& state, std::unique_ptr<ProgramGrid>& grid) {
    ProgramLoadHost host;
    host.enableProgramMenus = [] {};
    host.recreateGrid = [&state, &grid]() -> ProgramGrid& {
        grid = std::make_unique<ProgramGrid>();
        state.GridLoaded = true;
        SetupGrid(*grid, state);
        grid->Visible = true;
        return *grid;
    };
    return host;
}

namespace {

std::optional<ProgramFileError> readFields(SharedState& state, const ProgramLoadHost& host,
                                           text::InputFields& in) {
    try {
        readAll(state, host, in);
    } catch (const LoadFailure& failure) {
        return ProgramFileError{state.FilePath, failure.line, failure.what()};
    } catch (const Fault& fault) {
        return ProgramFileError{state.FilePath, in.line(), fault.what()};
    }
    return std::nullopt;
}

void beginLoad(SharedState& state, const ProgramLoadHost& host) {
    host.enableProgramMenus();
    for (int n = 1; n <= SharedState::kMaxTargets; ++n) state.SelRow[static_cast<std::size_t>(n)] = 0;
}

}  // namespace

std::optional<ProgramFileError> readProgramFile(SharedState& state, const ProgramLoadHost& host) {
    beginLoad(state, host);
    std::error_code ec;
    if (fs::is_directory(state.FilePath, ec)) return ProgramFileError{state.FilePath, 0, "it is a folder."};
    File file(std::fopen(state.FilePath.c_str(), "rb"));
    if (!file) return ProgramFileError{state.FilePath, 0, systemError() + "."};
    text::InputFields in(file.get());
    if (auto error = readFields(state, host, in)) return error;
    if (std::ferror(file.get())) return ProgramFileError{state.FilePath, in.line(), systemError() + "."};
    state.FileChanged = false;
    return std::nullopt;
}

std::optional<ProgramFileError> readProgramText(SharedState& state, const ProgramLoadHost& host,
                                                std::string_view content) {
    beginLoad(state, host);
    text::InputFields in(content);
    if (auto error = readFields(state, host, in)) return error;
    state.FileChanged = false;
    return std::nullopt;
}

}  // namespace halvane
