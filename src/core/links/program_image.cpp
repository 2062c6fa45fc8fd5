#include "links/program_image.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>

#include "authoring/grid_setup.h"
#include "links/transmitter_send.h"
#include "text/conversions.h"

namespace halvane {

namespace fs = std::filesystem;

namespace {

// The code of a cell's word, or 0 for text that writes nothing. Pause counts in column 1 only: a
// Pause row is told by its first cell.
std::uint32_t actionCode(const std::string& text, int col) {
    if (const auto action = wire::actionOfWord(text)) return wire::byteOf(*action);
    if (text == words::Pause && col == 1) return image::Pause;
    return 0;
}

}  // namespace

std::vector<ImageRecord> WriteProgramImage(const SharedState& state, ProgramGrid& grid) {
    std::vector<ImageRecord> image;
    int lastRow = 1;
    std::uint32_t pauseNo = 1;
    for (int row = 1; row <= state.NumSeconds + 1; ++row) {
        const int columns = programColumns(state);
        grid.setRow(row);
        for (int col = 1; col <= columns; ++col) {
            grid.setCol(col);
            const std::string& text = grid.TextMatrix(row, col);
            if (text == grid.TextMatrix(row - 1, col)) continue;
            const std::uint32_t code = actionCode(text, col);
            if (code == 0) continue;
            if (row != lastRow) {
                image.push_back({image::Delay, static_cast<std::uint32_t>(row - lastRow), row, 0});
                lastRow = row;
            }
            const std::uint32_t operand = code == image::Pause ? pauseNo++ : static_cast<std::uint32_t>(col);
            image.push_back({code, operand, row, col});
        }
    }
    return image;
}

std::string imageText(const std::vector<ImageRecord>& image) {
    std::string out;
    out.reserve(image.size() * 12);
    const auto line = [&out](std::uint32_t value) {
        out.push_back('"');
        out += text::Hex(value);
        out += "\"\r\n";
    };
    for (const ImageRecord& r : image) {
        line(r.code);
        line(r.operand);
    }
    return out;
}

fs::path tempImagePath() {
    for (const char* name : {"TMP", "TMPDIR"})
        if (const char* folder = std::getenv(name); folder && *folder) return fs::path(folder) / "temp.lm47";
    std::error_code ec;
    return fs::temp_directory_path(ec) / "temp.lm47";
}

std::optional<std::string> writeTempImage(const std::vector<ImageRecord>& image, const fs::path& path) {
    const std::string bytes = imageText(image);
    const auto failure = [&path](int error) {
        return "The Program image could not be written to \"" + path.string() +
               "\": " + std::strerror(error) + ".";
    };
    std::FILE* file = std::fopen(path.string().c_str(), "wb");
    if (!file) return failure(errno);
    int error = 0;
    if (std::fwrite(bytes.data(), 1, bytes.size(), file) != bytes.size()) error = errno;
    if (std::fclose(file) != 0 && error == 0) error = errno;
    if (error == 0) return std::nullopt;
    std::error_code ec;
    fs::remove(path, ec);
    return failure(error);
}

namespace {

std::string place(const ImageRecord& r, int col) {
    return "second " + std::to_string(r.row - 1) + " (row " + std::to_string(r.row) + ", column " +
           std::to_string(col) + ")";
}

std::string_view wordOf(std::uint32_t code) {
    if (code > 0xFF) return {};
    const auto action = wire::actionOfByte(static_cast<std::uint8_t>(code));
    return action ? wire::wordOfAction(*action) : std::string_view{};
}

// The block count N is one byte too: an image longer than 255 blocks hold cannot be announced.
std::optional<ImageProblem> findLengthProblem(const std::vector<ImageRecord>& image) {
    const std::size_t lines = image.size() * 2;
    if (lines <= SendProgram::kMaxLines) return std::nullopt;
    const std::size_t fit = SendProgram::kMaxLines / 2;
    const ImageRecord& first = image[fit];
    const int col = first.code == image::Delay && fit + 1 < image.size() ? image[fit + 1].col : first.col;
    const std::size_t over = image.size() - fit;
    return ImageProblem{
        "The Program is too long to send: its image has " + std::to_string(image.size()) + " records (" +
            std::to_string(lines) + " values), which need " + std::to_string(SendProgram::blockCount(lines)) +
            " blocks, and the transmitter takes at most " + std::to_string(SendProgram::kMaxBlocks) +
            " blocks (" + std::to_string(fit) + " records). It is " + std::to_string(over) +
            (over == 1 ? " record" : " records") + " too long; the first that does not fit is at " +
            place(first, col) + ".",
        first.row, col};
}

}  // namespace

std::optional<ImageProblem> findByteProblem(const std::vector<ImageRecord>& image) {
    const std::string lead = "The Program cannot be sent: ";
    for (std::size_t i = 0; i < image.size(); ++i) {
        const ImageRecord& r = image[i];
        if (r.code <= 255 && r.operand <= 255) continue;
        const std::string operand = std::to_string(r.operand);
        if (r.code == image::Delay) {
            // The delay has no cell of its own; the change it leads to is where the operator acts.
            const int col = i + 1 < image.size() ? image[i + 1].col : r.col;
            return ImageProblem{lead + operand + " seconds pass without a change before the one at " +
                                    place(r, col) + ", and the transmitter takes at most 255.",
                                r.row, col};
        }
        if (r.code == image::Pause)
            return ImageProblem{lead + "the Pause at " + place(r, r.col) + " is Pause number " + operand +
                                    ", and the transmitter takes at most 255.",
                                r.row, r.col};
        if (const auto word = wordOf(r.code); !word.empty())
            return ImageProblem{lead + "\"" + std::string(word) + "\" at " + place(r, r.col) +
                                    " is in column " + operand +
                                    ", and the transmitter takes column numbers up to 255.",
                                r.row, r.col};
        return ImageProblem{lead + "the record " + text::Hex(r.code) + " " + text::Hex(r.operand) + " at " +
                                place(r, r.col) + " holds a value above 255 (FF).",
                            r.row, r.col};
    }
    return findLengthProblem(image);
}

std::string imageBytes(const std::vector<ImageRecord>& image) {
    std::string bytes;
    bytes.reserve(image.size() * 2);
    for (const ImageRecord& r : image) {
        bytes.push_back(static_cast<char>(r.code & 0xFF));
        bytes.push_back(static_cast<char>(r.operand & 0xFF));
    }
    return bytes;
}

}  // namespace halvane
