// The score sheet on paper: a full grid printed through the print window's view to a PDF file, and
// that file rendered and looked at where the header and the blocks stand.

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

using namespace halvane;

static QString run(const QString& program, const QStringList& args) {
    QProcess p;
    p.start(program, args);
    return p.waitForFinished(30000) && p.exitCode() == 0 ? QString::fromUtf8(p.readAllStandardOutput()) : "";
}

// The bounds of the ink in a part of the page, in pixels of the page.
static QRect ink(const QImage& page, const QRect& part) {
    QRect bounds;
    for (int y = part.top(); y <= part.bottom(); ++y)
        for (int x = part.left(); x <= part.right(); ++x)
            if (qGray(page.pixel(x, y)) < 128) bounds |= QRect(x, y, 1, 1);
    return bounds;
}

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
        QTimer::singleShot(50, [&option1] {
            auto* d = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            QVERIFY(d && d->objectName() == "frmPrint");
            option1 = d->findChild<QRadioButton*>("Option1")->text();
            d->findChild<QLineEdit*>("txtHeader")->setText("Range 3 - Saturday shoot, squad B");
            d->findChild<QPushButton*>("OKButton")->click();
        });
        window.CmdPrint_Click();
        QCOMPARE(option1, QString("1-200"));

        const QString info = run("pdfinfo", {pdf});
        QVERIFY2(info.contains(QRegularExpression("Pages:\\s+2\\n")), qPrintable("pdfinfo: " + info));
        // The header's face, or the one of its metrics where it is not installed.
        const QString fonts = run("pdffonts", {pdf});
        QVERIFY2(fonts.contains(QRegularExpression("(Arial|LiberationSans)-?(Bold|,Bold)")),
                 qPrintable(fonts));

        const QString png = QString::fromStdString(dir.file("page"));
        run("pdftoppm", {"-png", "-r", "60", "-f", "1", "-l", "1", "-singlefile", pdf, png});
        const QImage page(png + ".png");
        QVERIFY(!page.isNull());
        const int w = page.width(), h = page.height();
        // The header centred on 95% of the width, 5% down; blocks 10% down, at 10% and 60% of the
        // width, each two columns of 1500 twips.
        const QRect header = ink(page, QRect(0, 0, w, h / 10 - 2));
        QVERIFY(std::abs(header.top() - h / 20) <= 3 && std::abs(header.center().x() - int(w * 0.475)) <= 3);
        const QRect first = ink(page, QRect(0, h / 10 - 1, w / 2, h - h / 10));
        const QRect second = ink(page, QRect(w / 2, h / 10 - 1, w / 2, h - h / 10));
        QVERIFY(std::abs(first.top() - h / 10) <= 2 && std::abs(second.top() - h / 10) <= 2);
        QVERIFY(std::abs(first.left() - w / 10) <= 2 && std::abs(second.left() - int(w * 0.6)) <= 2);
        QVERIFY(std::abs(second.width() - 3000 * 60 / 1440) <= 3);

        // HALVANE_SCREENSHOT=docs/screenshots/score-sheet.png keeps a picture of the page.
        if (const QString keep = qEnvironmentVariable("HALVANE_SCREENSHOT"); !keep.isEmpty())
            run("pdftoppm", {"-png", "-r", "90", "-f", "1", "-l", "1", "-singlefile", pdf, keep.chopped(4)});
    }
};

QTEST_MAIN(ScoreSheetTest)
#include "score_sheet_test.moc"
