// The range view on screen (offscreen): its size, a tile repainted alone with its new picture, clicks
// mapped to targets, and every corner of a large range reachable with the scroll bars.

#include <QPainter>
#include <QScrollBar>
#include <QSignalSpy>
#include <QtTest>

#include "range_view_widget.h"

using namespace halvane;

namespace {

// Records the rectangles a widget is asked to paint.
struct PaintLog : QObject {
    QRegion painted;
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint) painted += static_cast<QPaintEvent*>(event)->region();
        return false;
    }
};

// A run window's range of LM series targets, laid out from the top left and shown.
struct Shown {
    SharedState state;
    RangeView model{state, RangeWindowKind::Run};
    std::unique_ptr<app::RangeViewWidget> view;
    Shown(int targets, int cols, const char* iconSize, QSize size) {
        state.NumTargets = static_cast<std::int16_t>(targets);
        state.NumCols = static_cast<std::int16_t>(cols);
        state.IconSize = iconSize;
        state.StartBottom = false;
        state.TypeLMSeries = true;
        model.build();
        view = std::make_unique<app::RangeViewWidget>(model);
        view->resize(size);
        view->show();
    }
};

}  // namespace

class RangeViewWidgetTest : public QObject {
    Q_OBJECT

  private slots:
    void aFaceChangeRepaintsOnlyItsTileWithItsPictureAndClicksFindTheTarget() {
        Shown shown(7, 3, "Medium", {400, 300});
        auto& view = *shown.view;
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        QWidget* pic = view.findChild<QWidget*>("PicMain");
        QVERIFY(pic);
        QCOMPARE(pic->logicalDpiY(), 96);  // the figures below are at 15 twips a pixel
        QCOMPARE(pic->size(), QSize(278, 458));
        QCOMPARE(view.pictureRect(5), QRect(133, 158, 60, 70));

        PaintLog log;
        QTest::qWait(50);
        pic->installEventFilter(&log);
        shown.model.setFace(5, wire::Action::Friend);
        QTRY_VERIFY(!log.painted.isEmpty());
        QVERIFY(view.tileBounds(5).contains(log.painted.boundingRect()));
        QVERIFY(log.painted.contains(view.pictureRect(5)));

        QImage expected(60, 70, QImage::Format_RGB32);
        expected.fill(pic->palette().color(QPalette::Window));
        QPainter(&expected).drawPixmap(0, 0, app::RangeViewWidget::picture("friend_md", {60, 70}));
        QCOMPARE(pic->grab(view.pictureRect(5)).toImage().convertToFormat(QImage::Format_RGB32), expected);

        QSignalSpy clicked(&view, &app::RangeViewWidget::tileClicked);
        QTest::mouseClick(pic, Qt::RightButton, Qt::ShiftModifier, view.pictureRect(7).center());
        QTest::mouseClick(pic, Qt::LeftButton, {}, QPoint(2, 2));
        QCOMPARE(clicked.size(), 1);
        QCOMPARE(clicked[0][0].toInt(), 7);
        QCOMPARE(clicked[0][1].value<Qt::MouseButton>(), Qt::RightButton);
    }

    void theScrollBarsReachEveryCornerOfALargeRange() {
        Shown shown(200, 40, "Large", {800, 600});
        auto& view = *shown.view;
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        QWidget* pic = view.picMain();
        QScrollBar* h = view.horizontalScrollBar();
        QScrollBar* v = view.verticalScrollBar();
        QCOMPARE(std::make_tuple(v->singleStep(), v->pageStep(), h->pageStep()),
                 std::make_tuple(107, view.viewport()->height(), view.viewport()->width()));

        const auto visible = [&] { return QRect(-pic->pos(), view.viewport()->size()); };
        h->setValue(h->maximum());
        v->setValue(v->maximum());
        QCOMPARE(visible().bottomRight(), pic->rect().bottomRight());
        QVERIFY(visible().contains(view.tileBounds(200)));
        h->setValue(0);
        v->setValue(0);
        QVERIFY(visible().contains(view.tileBounds(1)));

        // One notch scrolls the system's number of lines.
        QWheelEvent notch(QPointF(10, 10), view.mapToGlobal(QPointF(10, 10)), {}, QPoint(-120, 0),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(view.viewport(), &notch);
        const int lines = QApplication::wheelScrollLines();
        QCOMPARE(h->value(), 107 * (lines < 1 ? 3 : lines));
    }
};

QTEST_MAIN(RangeViewWidgetTest)
#include "range_view_widget_test.moc"
