#include "range_view_widget.h"

#include <QApplication>
#include <QHash>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QScrollBar>
#include <QSvgRenderer>
#include <QWheelEvent>
#include <cmath>

#include "range/range_scroll.h"

namespace halvane::app {

namespace {

constexpr int kNotch = 120;  // one wheel notch in Qt's angle units

}  // namespace

// The whole range in one widget: 200 targets would otherwise take 800 child widgets.
class PicMain : public QWidget {
  public:
    explicit PicMain(RangeViewWidget& owner) : QWidget(&owner), m_owner(owner) {
        setObjectName("PicMain");
        setAutoFillBackground(true);
    }

  protected:
    void paintEvent(QPaintEvent* event) override {
        QPainter painter(this);
        const RangeView& model = m_owner.m_model;
        const PixelSize size = RangeView::pictureSize(model.iconSize());
        const QRect dirty = event->rect();
        for (const RangeTile& tile : model.tiles()) {
            if (!m_owner.tileBounds(tile.target).intersects(dirty)) continue;
            const std::string name = model.pictureName(tile.face);
            const QRect picture = m_owner.pictureRect(tile.target);
            if (!name.empty())
                painter.drawPixmap(
                    picture.topLeft(),
                    RangeViewWidget::picture(name, {size.width, size.height}, devicePixelRatioF()));
            // A single line round the picture; none shows a tile marked by a click.
            if (tile.BorderStyle != 0) {
                painter.setPen(palette().color(QPalette::WindowText));
                painter.drawRect(picture.adjusted(0, 0, -1, -1));
            }
            caption(painter, tile.numberCaption, tile.numberText);
            if (tile.serialText) caption(painter, tile.serialCaption, *tile.serialText);
            if (tile.hitsText && tile.hitsVisible) caption(painter, tile.hitsCaption, *tile.hitsText);
        }
        painter.setPen(palette().color(QPalette::WindowText));
        for (const RowLabel& label : model.rowLabels())
            painter.drawText(m_owner.rowLabelRect(label), Qt::AlignLeft | Qt::AlignTop,
                             QString::fromStdString(label.caption));
    }

    void mousePressEvent(QMouseEvent* event) override {
        const QPoint at = event->position().toPoint();
        if (const int target = m_owner.tileAt(at))
            emit m_owner.tileClicked(target, event->button(), event->modifiers());
        else if (const int row = m_owner.rowLabelAt(at))
            emit m_owner.rowLabelClicked(row, event->button(), event->modifiers());
    }

  private:
    void caption(QPainter& painter, TwipsPoint place, const std::string& text) {
        const QRect box = m_owner.toPixels(place, RangeView::kCaptionWidth, RangeView::kCaptionHeight);
        painter.setPen(palette().color(QPalette::WindowText));
        painter.drawText(box, Qt::AlignHCenter | Qt::AlignTop, QString::fromStdString(text));
    }

    RangeViewWidget& m_owner;
};

RangeViewWidget::RangeViewWidget(RangeView& model, QWidget* parent)
    : QScrollArea(parent), m_model(model), m_picMain(new PicMain(*this)) {
    setObjectName("picScrollBox");
    setWidgetResizable(false);
    setWidget(m_picMain);
    // The model may outlive this widget: the observer checks that the widget is still there.
    QPointer<RangeViewWidget> self(this);
    m_model.setObserver([self](int target) {
        if (self) self->tileChanged(target);
    });
    reload();
}

QPointF RangeViewWidget::twipsPerPixel() const {
    return {1440.0 / m_picMain->logicalDpiX(), 1440.0 / m_picMain->logicalDpiY()};
}

QRect RangeViewWidget::toPixels(TwipsPoint place, float widthTwips, float heightTwips) const {
    const QPointF tpp = twipsPerPixel();
    return QRect(qRound(place.left / tpp.x()), qRound(place.top / tpp.y()), qRound(widthTwips / tpp.x()),
                 qRound(heightTwips / tpp.y()));
}

QRect RangeViewWidget::rowLabelRect(const RowLabel& label) const {
    const QRect place = toPixels(label.place, 0, 0);
    return {place.topLeft(), m_picMain->fontMetrics().size(0, QString::fromStdString(label.caption))};
}

int RangeViewWidget::rowLabelAt(QPoint onPicMain) const {
    for (const RowLabel& label : m_model.rowLabels())
        if (rowLabelRect(label).contains(onPicMain)) return label.row;
    return 0;
}

void RangeViewWidget::reload() {
    const QPointF tpp = twipsPerPixel();
    m_picMain->setFixedSize(RangeScroll::toPixels(m_model.picMainWidth(), tpp.x()),
                            RangeScroll::toPixels(m_model.picMainHeight(), tpp.y()));
    applySteps();
    m_picMain->update();
}

void RangeViewWidget::applySteps() {
    const RangeScroll scroll(m_model.iconSize(), QApplication::wheelScrollLines());
    const QSize view = viewport()->size();
    horizontalScrollBar()->setRange(0, RangeScroll::maximum(m_picMain->width(), view.width()));
    verticalScrollBar()->setRange(0, RangeScroll::maximum(m_picMain->height(), view.height()));
    horizontalScrollBar()->setSingleStep(scroll.lineStep());
    verticalScrollBar()->setSingleStep(scroll.lineStep());
    horizontalScrollBar()->setPageStep(RangeScroll::pageStep(view.width()));
    verticalScrollBar()->setPageStep(RangeScroll::pageStep(view.height()));
}

void RangeViewWidget::resizeEvent(QResizeEvent* event) {
    QScrollArea::resizeEvent(event);
    applySteps();
}

void RangeViewWidget::wheelEvent(QWheelEvent* event) {
    // A notch moves the system's number of lines, and at least three when the system asks for none.
    const int step = RangeScroll(m_model.iconSize(), QApplication::wheelScrollLines()).wheelStep();
    m_wheelRest += event->angleDelta();
    const QPoint notches(m_wheelRest.x() / kNotch, m_wheelRest.y() / kNotch);
    m_wheelRest -= notches * kNotch;
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() - notches.x() * step);
    verticalScrollBar()->setValue(verticalScrollBar()->value() - notches.y() * step);
    event->accept();
}

QRect RangeViewWidget::pictureRect(int target) const {
    const RangeTile& tile = m_model.tiles().at(static_cast<std::size_t>(target - 1));
    const PixelSize size = RangeView::pictureSize(m_model.iconSize());
    return QRect(toPixels(tile.tile, 0, 0).topLeft(), QSize(size.width, size.height));
}

QRect RangeViewWidget::tileBounds(int target) const {
    const RangeTile& tile = m_model.tiles().at(static_cast<std::size_t>(target - 1));
    const float w = RangeView::kCaptionWidth, h = RangeView::kCaptionHeight;
    QRect bounds = pictureRect(target) | toPixels(tile.numberCaption, w, h);
    if (tile.serialText) bounds |= toPixels(tile.serialCaption, w, h);
    if (tile.hitsText) bounds |= toPixels(tile.hitsCaption, w, h);
    return bounds;
}

int RangeViewWidget::tileAt(QPoint onPicMain) const {
    for (const RangeTile& tile : m_model.tiles())
        if (pictureRect(tile.target).contains(onPicMain)) return tile.target;
    return 0;
}

QPixmap RangeViewWidget::picture(const std::string& name, QSize size, qreal devicePixelRatio) {
    static QHash<QString, QPixmap> cache;
    const QString key = QString("%1@%2x%3@%4")
                            .arg(QString::fromStdString(name))
                            .arg(size.width())
                            .arg(size.height())
                            .arg(devicePixelRatio);
    auto found = cache.constFind(key);
    if (found != cache.constEnd()) return *found;
    QPixmap pixmap(size * devicePixelRatio);
    pixmap.setDevicePixelRatio(devicePixelRatio);
    pixmap.fill(Qt::transparent);
    QSvgRenderer renderer(QString(":/tiles/%1.svg").arg(QString::fromStdString(name)));
    QPainter painter(&pixmap);
    renderer.render(&painter, QRectF(QPointF(0, 0), QSizeF(size)));
    painter.end();
    cache.insert(key, pixmap);
    return pixmap;
}

void RangeViewWidget::tileChanged(int target) {
    if (target <= 0 || target > static_cast<int>(m_model.tiles().size())) {
        reload();
        return;
    }
    m_picMain->update(tileBounds(target));
}

}  // namespace halvane::app
