#pragma once
// The score sheet on a real printer or a PDF file: the print dialog, the header line, and each block
// drawn as a picture of the grid, placed on the whole paper in twips.

#include <QPainter>
#include <QPointer>
#include <QString>
#include <QWidget>
#include <memory>

#include "scores/score_print.h"

class QPrinter;

namespace halvane::app {

class ScoreSheetPrinter : public ScorePrinter {
  public:
    // Asks the operator for the printer (any installed one, or a PDF file) at each print.
    explicit ScoreSheetPrinter(QWidget* dialogParent = nullptr);
    // Prints straight to the PDF file `path`, without asking.
    static std::unique_ptr<ScoreSheetPrinter> toPdf(const QString& path);
    ~ScoreSheetPrinter() override;

    bool begin() override;
    void header(const std::string& text, const PrintFont& font, double centreX, double top) override;
    void paint(const GridPicture& picture, double x, double y) override;
    void newPage() override;
    void end() override;

  private:
    QSizeF pageTwips() const;

    std::unique_ptr<QPrinter> m_printer;
    QPointer<QWidget> m_dialogParent;
    QString m_pdfPath;  // set: no dialog
    QPainter m_painter;
};

}  // namespace halvane::app
