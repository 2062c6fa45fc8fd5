// The score sheet on paper: the print window's view through the operator, a full grid printed to a
// PDF file, and that file rendered to a picture and looked at where the blocks and the header stand.

#include <QDialog>
#include <QImage>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <QtTest>
#include <cstdlib>

#include "../core/temp_dir.h"
#include "platform/qt_operator.h"
#include "score_printer.h"
#include "scores/hit_scores.h"
#include "scores/score_print.h"

using namespace halvane;

namespace {

// Runs `step` on the print window once it is up.
void whenPrintWindowUp(std::function<void(QDialog*)> step) {
    auto* poll = new QTimer;
    QObject::connect(poll, &QTimer::timeout, poll, [poll, step] {
        auto* up = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (up && up->objectName() == "frmPrint") {
            poll->deleteLater();
            step(up);
        }
    });
    poll->start(5);
}

QString run(const QString& program, const QStringList& args) {
    QProcess p;
    p.start(program, args);
    if (!p.waitForFinished(30000) || p.exitCode() != 0) return {};
    return QString::fromUtf8(p.readAllStandardOutput());
}

// The first and last column, and the first row, that hold ink in the band of rows [top, bottom).
struct Ink {
    int left = -1, right = -1, top = -1;
};
Ink inkIn(const QImage& image, int top, int bottom) {
    Ink ink;
    for (int y = top; y < bottom; ++y)
        for (int x = 0; x < image.width(); ++x)
            if (qGray(image.pixel(x, y)) < 128) {
                if (ink.left < 0 || x < ink.left) ink.left = x;
                ink.right = std::max(ink.right, x);
                if (ink.top < 0) ink.top = y;
            }
    return ink;
}

}  // namespace

class ScoreSheetTest : public QObject {
    Q_OBJECT

  private slots:
    void aFullGridPrintsTwoPagesOfTwoBlocksUnderTheHeader() {
        halvane::testing::TempDir dir;
        const QString pdf = QString::fromStdString(dir.file("score-sheet.pdf"));
        auto printer = app::ScoreSheetPrinter::toPdf(pdf);
        SharedState state;
        app::QtOperator op;
        FrmHitScores window(state, nullptr, nullptr, op, nullptr, printer.get());
        window.Load();
        for (int r = 1; r < window.Grid.Rows(); ++r)
            if (r % 9 != 0) window.Grid.setTextMatrix(r, 1, std::to_string((r * 7) % 23));

        QString option1;
        whenPrintWindowUp([&option1](QDialog* d) {
            option1 = d->findChild<QRadioButton*>("Option1")->text();
            d->findChild<QLineEdit*>("txtHeader")->setText("Range 3 - Saturday shoot, squad B");
            d->findChild<QPushButton*>("OKButton")->click();
        });
        window.CmdPrint_Click();
        QCOMPARE(option1, QString("1-200"));
        QCOMPARE(window.PrintRows, std::string("200"));

        const QString info = run("pdfinfo", {pdf});
        QVERIFY2(!info.isEmpty(), "pdfinfo (poppler-utils) did not read the file");
        QVERIFY2(info.contains(QRegularExpression("Pages:\\s+2\\n")), qPrintable(info));

        // The header's face, or the one of its metrics where it is not installed.
        const QString fonts = run("pdffonts", {pdf});
        QVERIFY2(fonts.contains(QRegularExpression("(Arial|LiberationSans)-?(Bold|,Bold)")),
                 qPrintable(fonts));

        const QString png = QString::fromStdString(dir.file("page"));
        run("pdftoppm", {"-png", "-r", "60", "-f", "1", "-l", "1", "-singlefile", pdf, png});
        const QImage page(png + ".png");
        QVERIFY(!page.isNull());
        const int w = page.width(), h = page.height();
        // The header line in the middle of 95% of the width, from 5% down; the blocks from 10% down,
        // one from 10% of the width, the other from 60%, each two columns of 1500 twips wide.
        const Ink header = inkIn(page, 0, h / 10 - 2);
        QVERIFY(std::abs(header.top - h / 20) <= 3);
        QVERIFY(std::abs((header.left + header.right) / 2 - int(w * 0.475)) <= 3);
        const Ink blocks = inkIn(page, h / 10, h);
        QVERIFY(std::abs(blocks.top - h / 10) <= 2);
        QVERIFY(std::abs(blocks.left - w / 10) <= 2);
        const Ink second = inkIn(page.copy(w / 2, h / 10, w / 2, h - h / 10), 0, h - h / 10);
        QVERIFY(std::abs(w / 2 + second.left - int(w * 0.6)) <= 2);
        QVERIFY(std::abs(second.right - second.left - 3000 * 60 / 1440) <= 3);

        // HALVANE_SCREENSHOT=docs/screenshots/score-sheet.png keeps a picture of the page.
        if (const QString keep = qEnvironmentVariable("HALVANE_SCREENSHOT"); !keep.isEmpty())
            run("pdftoppm", {"-png", "-r", "90", "-f", "1", "-l", "1", "-singlefile", pdf, keep.chopped(4)});
    }
};

QTEST_MAIN(ScoreSheetTest)
#include "score_sheet_test.moc"
