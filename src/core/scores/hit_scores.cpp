#include "scores/hit_scores.h"

#include "authoring/about_box.h"
#include "authoring/operator.h"
#include "links/com_port.h"

namespace halvane {

namespace {
constexpr std::uint8_t kCentre = 4;
constexpr int kColumnWidth = 1500;
}  // namespace

FrmHitScores::FrmHitScores(SharedState& state, ComPortModule* comPort, WifiLink* wifi, Operator& op,
                           WorkbookWriter* workbooks, ScorePrinter* printer)
    : m_state(state),
      m_comPort(comPort),
      m_wifi(wifi),
      m_operator(op),
      m_workbooks(workbooks),
      m_printer(printer),
      m_poll(state.ReplyHex, {}) {}

FrmHitScores::~FrmHitScores() = default;

void FrmHitScores::Load() {
    Grid.setRows(kGridRows);
    Grid.setCols(2);
    for (int c = 0; c < 2; ++c) Grid.setColWidth(c, kColumnWidth);
    Grid.setCellAlignment(0, 0, kCentre);
    Grid.setTextMatrix(0, 0, "Target Num");
    Grid.setCellAlignment(0, 1, kCentre);
    Grid.setTextMatrix(0, 1, "Hit Score");
    for (int i = 1; i < kGridRows; ++i) {
        Grid.setCellAlignment(i, 0, kCentre);
        Grid.setTextMatrix(i, 0, std::to_string(i));
    }
    RowHeight.assign(kGridRows, kDefaultRowHeight);
    RowData.assign(kGridRows, 0);
}

void FrmHitScores::changed() const {
    if (m_changeObserver) m_changeObserver();
}

}  // namespace halvane
