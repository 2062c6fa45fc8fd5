#pragma once
// The printed score sheet: frmPrint, which asks for the header line and the range, the print rule
// that lays the grid's rows out in blocks of fifty, two to a page, and the printer it goes to.

#include <string>
#include <vector>

#include "authoring/control.h"
#include "authoring/program_grid.h"
#include "authoring/window.h"

namespace halvane {

class FrmHitScores;

// A font as the printer is told it.
struct PrintFont {
    std::string name;
    int size = 10;  // points
    bool bold = false;
    bool underline = false;
};

// The header line's font. A printer without this face takes one of the same metrics.
inline const PrintFont kHeaderFont{"Arial", 14, true, true};

// A picture of the grid as it stands on screen: hidden rows left out, the heading row on top.
struct GridPicture {
    struct Row {
        int height = 0;  // twips
        std::vector<std::string> texts;
    };
    std::vector<int> colWidths;  // twips
    std::vector<Row> rows;       // the heading row first
    int fixedCols = 1;           // the leading columns drawn as headings, like the heading row

    int width() const;
    int height() const;
};

// The heading row and `rows` of `grid`, at their heights in `rowHeight`.
GridPicture gridPicture(const ProgramGrid& grid, const std::vector<int>& rowHeight,
                        const std::vector<int>& rows);

// Where the sheet goes. Places are fractions of the page, whose whole paper the printer addresses.
class ScorePrinter {
  public:
    virtual ~ScorePrinter() = default;
    // Starts a document, letting the operator pick the printer. False when the operator cancelled;
    // throws Fault when the printer will not start.
    virtual bool begin() = 0;
    // One line of text, its middle at `centreX` of the page's width, its top at `top` of its height.
    virtual void header(const std::string& text, const PrintFont& font, double centreX, double top) = 0;
    // The picture at its own size, its top left corner at (x, y).
    virtual void paint(const GridPicture& picture, double x, double y) = 0;
    virtual void newPage() = 0;
    // Finishes the document; throws Fault when it could not be written.
    virtual void end() = 0;
};

// One block of the sheet: the grid rows it shows beneath the heading row, and its place.
struct PrintBlock {
    int page = 1;
    double x = 0, y = 0;
    std::vector<int> rows;
};

// What a print does: the blocks in the order they are painted, and the row heights it leaves.
struct PrintPlan {
    std::vector<PrintBlock> blocks;
    std::vector<int> rowHeight, rowData;
    int pages() const { return blocks.empty() ? 0 : blocks.back().page; }
};

// The print rule for the bound h on a grid of rowHeight.size() rows, hiding and showing rows with
// the window's RowHeight and RowData as printing does.
PrintPlan planPrint(int h, std::vector<int> rowHeight, std::vector<int> rowData);

// The header line sits in the middle of 95% of the page's width, 5% down.
inline constexpr double kHeaderCentreX = 0.95 / 2, kHeaderTop = 0.05;

// frmPrint, "Print": the header line and the range of rows to print. Modal.
class frmPrint : public Window {
  public:
    static constexpr const char* Caption = "Print";
    static constexpr const char* Label1 = "Header";
    static constexpr const char* Frame1 = "Print Range";

    explicit frmPrint(FrmHitScores& scores) : m_scores(scores) {}

    std::string txtHeader;
    Control Option1{"", true, true, 0, 0, 0, 0};  // "1-" and the last row, made at load
    Control Option2{"1 - ", true, true, 0, 0, 0, 0};
    bool option2Selected = false;  // Option1 is selected at load
    std::string txtRange;          // the upper end of the Option2 range

    void Load();
    // Hands the header and the bound h to the window, as PrintHeader and PrintRows.
    void OKButton_Click();
    void CancelButton_Click();
    bool closed() const { return m_closed; }

  private:
    FrmHitScores& m_scores;
    bool m_closed = false;
};

}  // namespace halvane
