#include "links/program_decoder.h"

#include <cstdint>
#include <string>

#include "text/fault.h"
#include "text/wire_vocabulary.h"

namespace halvane {

namespace {

constexpr std::uint8_t kFriend = wire::byteOf(wire::Action::Friend);
constexpr std::uint8_t kFoe = wire::byteOf(wire::Action::Foe);
constexpr std::uint8_t kEdge = wire::byteOf(wire::Action::Edge);
constexpr std::uint8_t kDown = wire::byteOf(wire::Action::Down);
using wire::kDelay;
using wire::kPause;

}  // namespace

std::optional<int> ProgramDecoder::decode(std::string_view records, Rules rules) {
    if (rules == Rules::FirstBlock) m_grid.setRow(1);
    for (std::size_t i = 0; i + 1 < records.size(); i += 2) {
        const auto code = static_cast<std::uint8_t>(records[i]);
        const int operand = static_cast<std::uint8_t>(records[i + 1]);
        // The zero fill behind the last record is the end mark; a Pause may carry 0 as its number.
        if (code != kPause && operand == 0) break;
        if (code != kDelay) {
            if (operand > m_grid.Cols() - 1) {
                if (rules == Rules::FurtherBlock || operand >= ProgramGrid::kMaxCols) return operand;
                addColumns(operand);
            }
            m_grid.setCol(operand);
            holdFill();
        }
        switch (code) {
            case kFriend:
                m_grid.setText(words::Friend);
                m_grid.setCellBackColor(colors::Friend);
                break;
            case kFoe:
                m_grid.setText(words::Foe);
                m_grid.setCellBackColor(colors::Foe);
                break;
            case kEdge:
                m_grid.setText(words::Edge);
                m_grid.setCellBackColor(colors::Edge);
                break;
            case kDown:
                m_grid.setText(words::Down);
                m_grid.setCellBackColor(colors::Down);
                break;
            case kDelay:
                advanceRows(operand, rules);
                break;
            case kPause:
                insertPause();
                break;
            default:
                break;
        }
    }
    return std::nullopt;
}

// Columns beyond the Program's targets are headed as targets even in groups mode, and NumTargets is
// left alone: the image writer never scans them.
void ProgramDecoder::addColumns(int operand) {
    while (operand > m_grid.Cols() - 1) {
        const int column = m_grid.Cols();
        m_grid.setCols(column + 1);
        m_grid.setTextMatrix(0, column, "Target # " + std::to_string(column));
    }
}

// The last action above is held down to the current row, but not across a Pause.
void ProgramDecoder::holdFill() {
    const int here = m_grid.Row();
    const int col = m_grid.Col();
    int found = here - 1;
    while (found >= 1 && m_grid.TextMatrix(found, col).empty()) --found;
    if (found < 1) return;
    const std::string text = m_grid.TextMatrix(found, col);
    if (text == words::Pause) return;
    const Color back = m_grid.cellBackColor(found, col);
    for (int row = found + 1; row < here; ++row) {
        m_grid.setTextMatrix(row, col, text);
        m_grid.setCellBackColor(row, col, back);
    }
}

void ProgramDecoder::advanceRows(int count, Rules rules) {
    for (int i = 0; i < count; ++i) {
        if (m_grid.Row() != m_state.NumSeconds) {
            m_grid.setRow(m_grid.Row() + 1);
            continue;
        }
        addRow();
        m_grid.setRow(m_grid.Row() + 1);
        // Further blocks label their new rows one higher than the first block does, so the seconds
        // jump by one where the second block begins; the console has always shown it so.
        const int label = rules == Rules::FirstBlock ? m_state.NumSeconds - 1 : m_state.NumSeconds;
        m_grid.setTextMatrix(m_grid.Row(), 0, std::to_string(label));
    }
}

// The Pause lands one row below the current row, and what follows it two rows further down.
void ProgramDecoder::insertPause() {
    const int here = m_grid.Row();
    for (int i = 0; i < 2; ++i) {
        addRow();
        m_grid.setTextMatrix(m_state.NumSeconds, 0, std::to_string(m_state.NumSeconds - 1));
    }
    const int row = here + 1;
    m_grid.setRow(row);
    for (int col = 1; col < m_grid.Cols(); ++col) {
        m_grid.setCol(col);
        m_grid.setText(words::Pause);
        m_grid.MergeCells = 2;
        m_grid.setCellBackColor(colors::Pause);
        m_grid.setCellForeColor(colors::PauseText);
        m_grid.setMergeRow(row, true);
        m_grid.setCellAlignment(align::CenterCenter);
    }
    m_grid.setRow(m_state.NumSeconds);
}

void ProgramDecoder::addRow() {
    // The last row in use may reach one past the longest Program: the download takes that one back.
    if (m_state.NumSeconds > SharedState::kMaxSeconds)
        throw Fault("The Program on the transmitter is longer than " +
                    std::to_string(SharedState::kMaxSeconds) + " seconds, the most a Program can have.");
    ++m_state.NumSeconds;
    m_grid.setRows(m_state.NumSeconds + 1);
}

}  // namespace halvane
