#include "score_printer.h"

#include <QFileInfo>
#include <QFontMetricsF>
#include <QPrintDialog>
#include <QPrinter>

#include "text/fault.h"

namespace halvane::app {

namespace {
constexpr double kTwipsPerPoint = 20;
// The grid's own look: a small sans face, grey headings, dark cell borders.
constexpr int kCellFontPoints = 8;
const QColor kHeadingFill(0xd4, 0xd0, 0xc8);
const QColor kGridLine(0x40, 0x40, 0x40);
constexpr double kLineTwips = 10;

QFont printFont(const std::string& name, int points, bool bold, bool underline) {
    QFont font;
    // Where the face is missing, the one of the same metrics stands in for it.
    font.setFamilies({QString::fromStdString(name), "Liberation Sans", "Arimo", "sans-serif"});
    // The painter counts in twips, so a point is twenty of them.
    font.setPixelSize(static_cast<int>(points * kTwipsPerPoint));
    font.setBold(bold);
    font.setUnderline(underline);
    return font;
}
}  // namespace

ScoreSheetPrinter::ScoreSheetPrinter(QWidget* dialogParent)
    : m_printer(std::make_unique<QPrinter>(QPrinter::HighResolution)), m_dialogParent(dialogParent) {}

ScoreSheetPrinter::~ScoreSheetPrinter() {
    if (m_painter.isActive()) m_painter.end();
}

std::unique_ptr<ScoreSheetPrinter> ScoreSheetPrinter::toPdf(const QString& path) {
    auto printer = std::make_unique<ScoreSheetPrinter>();
    printer->m_pdfPath = path;
    return printer;
}

bool ScoreSheetPrinter::begin() {
    // A document that a fault left open is dropped, not continued.
    if (m_painter.isActive()) {
        m_printer->abort();
        m_painter.end();
    }
    if (m_pdfPath.isEmpty()) {
        QPrintDialog dialog(m_printer.get(), m_dialogParent);
        dialog.setWindowTitle("Print");
        if (dialog.exec() != QDialog::Accepted) return false;
    } else {
        m_printer->setOutputFormat(QPrinter::PdfFormat);
        m_printer->setOutputFileName(m_pdfPath);
    }
    // Places are fractions of the whole paper, margins included.
    m_printer->setFullPage(true);
    m_printer->setDocName("Hit Scores");
    if (!m_painter.begin(m_printer.get())) {
        const QString where = m_printer->outputFileName().isEmpty()
                                  ? "the printer " + m_printer->printerName()
                                  : QFileInfo(m_printer->outputFileName()).fileName();
        throw Fault(where.toStdString() + " would not open for printing");
    }
    const double scale = m_printer->resolution() / 1440.0;
    m_painter.scale(scale, scale);
    return true;
}

QSizeF ScoreSheetPrinter::pageTwips() const {
    return m_printer->paperRect(QPrinter::Point).size() * kTwipsPerPoint;
}

void ScoreSheetPrinter::header(const std::string& text, const PrintFont& f, double centreX, double top) {
    m_painter.setFont(printFont(f.name, f.size, f.bold, f.underline));
    m_painter.setPen(Qt::black);
    const QString line = QString::fromStdString(text);
    const QFontMetricsF metrics = m_painter.fontMetrics();
    const QSizeF page = pageTwips();
    const double x = page.width() * centreX - metrics.horizontalAdvance(line) / 2;
    m_painter.drawText(QPointF(x, page.height() * top + metrics.ascent()), line);
}

void ScoreSheetPrinter::paint(const GridPicture& picture, double x, double y) {
    const QSizeF page = pageTwips();
    m_painter.save();
    m_painter.translate(page.width() * x, page.height() * y);
    m_painter.setFont(printFont("Arial", kCellFontPoints, false, false));
    QPen line(kGridLine);
    line.setWidthF(kLineTwips);
    double top = 0;
    for (std::size_t r = 0; r < picture.rows.size(); ++r) {
        const GridPicture::Row& row = picture.rows[r];
        double left = 0;
        for (std::size_t c = 0; c < picture.colWidths.size(); ++c) {
            const QRectF cell(left, top, picture.colWidths[c], row.height);
            if (r == 0 || static_cast<int>(c) < picture.fixedCols) m_painter.fillRect(cell, kHeadingFill);
            m_painter.setPen(line);
            m_painter.drawRect(cell);
            m_painter.setPen(Qt::black);
            if (c < row.texts.size())
                m_painter.drawText(cell, Qt::AlignCenter, QString::fromStdString(row.texts[c]));
            left += picture.colWidths[c];
        }
        top += row.height;
    }
    m_painter.restore();
}

void ScoreSheetPrinter::newPage() {
    if (!m_printer->newPage()) throw Fault("the printer would not start a new page");
}

void ScoreSheetPrinter::end() {
    const bool ended = m_painter.end();
    if (!ended || m_printer->printerState() == QPrinter::Error)
        throw Fault("the printer did not finish the document");
}

}  // namespace halvane::app
