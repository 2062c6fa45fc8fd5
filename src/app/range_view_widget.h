#pragma once
// The range view of the range windows: a scroll area over one picture, PicMain, that paints every
// tile, caption and row label of the range from its model.

#include <QPixmap>
#include <QScrollArea>

#include "range/range_view.h"

namespace halvane::app {

class RangeViewWidget : public QScrollArea {
    Q_OBJECT
  public:
    // The model must outlive the widget; the widget reads it afresh at every paint.
    explicit RangeViewWidget(RangeView& model, QWidget* parent = nullptr);

    // Takes the range's size from the model again; call after build().
    void reload();

    QWidget* picMain() const { return m_picMain; }
    // The target whose tile covers a point of PicMain, 0 for none.
    int tileAt(QPoint onPicMain) const;
    // The row whose label covers a point of PicMain, 0 for none.
    int rowLabelAt(QPoint onPicMain) const;
    QRect rowLabelRect(const RowLabel& label) const;
    // Where target's picture stands in PicMain, and everything of it, captions included.
    QRect pictureRect(int target) const;
    QRect tileBounds(int target) const;

    // A face's picture at its size in pixels, rendered once and kept for the process.
    static QPixmap picture(const std::string& name, QSize size, qreal devicePixelRatio = 1.0);

  signals:
    void tileClicked(int target, Qt::MouseButton button, Qt::KeyboardModifiers modifiers);
    void rowLabelClicked(int row, Qt::MouseButton button, Qt::KeyboardModifiers modifiers);

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

  private:
    friend class PicMain;
    void applySteps();
    QPointF twipsPerPixel() const;
    QRect toPixels(TwipsPoint place, float widthTwips, float heightTwips) const;
    void tileChanged(int target);

    RangeView& m_model;
    QWidget* m_picMain;
    QPoint m_wheelRest;  // part of a notch not yet scrolled, from fine-grained wheels
};

}  // namespace halvane::app
