// FrmHitScores: the score sheet on paper.

#include "authoring/about_box.h"
#include "authoring/operator.h"
#include "scores/hit_scores.h"
#include "scores/score_print.h"
#include "text/conversions.h"
#include "text/fault.h"

namespace halvane {

void FrmHitScores::CmdPrint_Click() {
    // A download under way would change the grid beneath the print dialog.
    if (busy()) {
        m_operator.tell("The scores are still being read: print when the download has finished.", kAppTitle);
        return;
    }
    Tag = "0";
    frmPrint dialog(*this);
    dialog.Load();
    m_operator.show(dialog);
    if (text::Val(Tag) == 1) return;
    if (!m_printer) {
        m_operator.tell("No printer is set up for the score sheet: nothing was printed.", kAppTitle);
        return;
    }

    const auto bound = text::strictNumber(PrintRows);
    if (!bound) {
        m_operator.tell("The print range \"" + PrintRows + "\" is not a number: nothing was printed.",
                        kAppTitle);
        return;
    }
    // The range 1 to h - 1 must lie within the grid's rows.
    const int last = Grid.Rows() - 1;
    const auto h = text::toInt32(*bound);
    if (!h || *h < 2 || *h - 1 > last) {
        m_operator.tell("Print range 1 - " + text::CStr(*bound - 1) + " is not within rows 1 to " +
                            std::to_string(last) + ": nothing was printed.",
                        kAppTitle);
        return;
    }

    RowHeight.resize(static_cast<std::size_t>(Grid.Rows()), kDefaultRowHeight);
    RowData.resize(static_cast<std::size_t>(Grid.Rows()), 0);
    const PrintPlan plan = planPrint(*h, RowHeight, RowData);
    try {
        if (!m_printer->begin()) return;
        m_printer->header(PrintHeader, kHeaderFont, kHeaderCentreX, kHeaderTop);
        int page = 1;
        for (const PrintBlock& block : plan.blocks) {
            if (block.page != page) {
                page = block.page;
                m_printer->newPage();
                m_printer->header(PrintHeader, kHeaderFont, kHeaderCentreX, kHeaderTop);
            }
            // A row shows at the height it had before printing began.
            m_printer->paint(gridPicture(Grid, RowHeight, block.rows), block.x, block.y);
        }
        m_printer->end();
    } catch (const Fault& fault) {
        m_operator.tell(std::string("The score sheet was not printed: ") + fault.what(), kAppTitle);
        return;
    }
    RowHeight = plan.rowHeight;
    RowData = plan.rowData;
    changed();
}

}  // namespace halvane
