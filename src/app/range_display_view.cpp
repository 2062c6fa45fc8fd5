#include "range_display_view.h"

#include <QLabel>
#include <QPushButton>

#include "platform/guarded_application.h"
#include "platform/twips.h"
#include "range/range_display.h"
#include "range_view_widget.h"

namespace halvane::app {

namespace {
// The mouse buttons as the window's MouseDown numbers them.
int buttonNumber(Qt::MouseButton button) {
    switch (button) {
        case Qt::LeftButton:
            return RangeDisplay::kLeftButton;
        case Qt::RightButton:
            return RangeDisplay::kRightButton;
        case Qt::MiddleButton:
            return 4;
        default:
            return 0;
    }
}
}  // namespace

RangeDisplayView::RangeDisplayView(RangeDisplay& model, QWidget* parent) : QDialog(parent), m_model(model) {
    setObjectName("RangeDisplay");
    setWindowTitle(RangeDisplay::Caption);
    m_label1 = new QLabel(QString::fromStdString(model.Label1.Caption), this);
    m_label1->setObjectName("Label1");
    m_label1->setAlignment(Qt::AlignCenter);
    m_ok = new QPushButton(QString::fromStdString(model.OKButton.Caption), this);
    m_ok->setObjectName("OKButton");
    m_ok->setDefault(true);
    m_range = new RangeViewWidget(model.view(), this);

    connect(m_ok, &QPushButton::clicked, this, [this] { act([this] { m_model.OKButton_Click(); }); });
    connect(m_range, &RangeViewWidget::tileClicked, this,
            [this](int target, Qt::MouseButton button, Qt::KeyboardModifiers) {
                act([this, target, button] { m_model.PicTarget_MouseDown(target, buttonNumber(button)); });
            });
    resize(720, 560);
    refresh();
}

void RangeDisplayView::act(const std::function<void()>& handler) {
    GuardedApplication::handle(handler);
    refresh();
    if (m_model.closed()) accept();
}

void RangeDisplayView::place(QWidget* widget, const Control& control) {
    widget->setGeometry(toPixels(control.Left), toPixels(control.Top), toPixels(control.Width),
                        toPixels(control.Height));
    widget->setVisible(control.Visible);
    widget->setEnabled(control.Enabled);
}

void RangeDisplayView::refresh() {
    place(m_label1, m_model.Label1);
    place(m_ok, m_model.OKButton);
    place(m_range, m_model.picScrollBox);
}

void RangeDisplayView::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    act([this] {
        m_model.Resize(static_cast<float>(toTwips(width())), static_cast<float>(toTwips(height())));
    });
}

}  // namespace halvane::app
