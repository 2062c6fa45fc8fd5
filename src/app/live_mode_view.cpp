#include "live_mode_view.h"

#include <QLabel>
#include <QPushButton>
#include <chrono>

#include "range/live_mode.h"
#include "range_view_widget.h"

namespace halvane::app {

namespace {
TimePoint now() {
    return std::chrono::steady_clock::now();
}

int buttonOf(Qt::MouseButton button) {
    return button == Qt::LeftButton    ? frmLiveMode::kLeftButton
           : button == Qt::RightButton ? frmLiveMode::kRightButton
                                       : 0;
}

// Ctrl held alone, as the window's mouse table reads it.
int shiftOf(Qt::KeyboardModifiers modifiers) {
    return modifiers == Qt::ControlModifier ? frmLiveMode::kCtrl : 0;
}
}  // namespace

LiveModeView::LiveModeView(frmLiveMode& model, QWidget* parent)
    : RangeWindowView(model, "frmLiveMode", frmLiveMode::Caption, parent), m_model(model) {
    m_label1 = label("Label1", model.Label1);
    m_label1->setAlignment(Qt::AlignCenter);
    m_label2 = label("Label2", model.Label2);
    m_label2->setAlignment(Qt::AlignCenter);
    m_friend = button("BtnFriend", model.BtnFriend);
    m_edge = button("BtnEdge", model.BtnEdge);
    m_foe = button("BtnFoe", model.BtnFoe);
    m_down = button("BtnDown", model.BtnDown);
    m_exit = button("BtnExit", model.BtnExit);

    connect(m_friend, &QPushButton::clicked, this,
            [this] { act([this] { m_model.BtnFriend_Click(now()); }); });
    connect(m_edge, &QPushButton::clicked, this, [this] { act([this] { m_model.BtnEdge_Click(now()); }); });
    connect(m_foe, &QPushButton::clicked, this, [this] { act([this] { m_model.BtnFoe_Click(now()); }); });
    connect(m_down, &QPushButton::clicked, this, [this] { act([this] { m_model.BtnDown_Click(now()); }); });
    connect(m_exit, &QPushButton::clicked, this, [this] { act([this] { m_model.BtnExit_Click(); }); });
    connect(
        range(), &RangeViewWidget::tileClicked, this,
        [this](int target, Qt::MouseButton button, Qt::KeyboardModifiers modifiers) {
            act([&] { m_model.PicTarget_MouseDown(target, buttonOf(button), shiftOf(modifiers), now()); });
        });
    connect(range(), &RangeViewWidget::rowLabelClicked, this,
            [this](int row, Qt::MouseButton button, Qt::KeyboardModifiers modifiers) {
                act([&] { m_model.LblRow_MouseDown(row, buttonOf(button), shiftOf(modifiers), now()); });
            });
    finishSetup();
}

void LiveModeView::refreshOwn() {
    const frmLiveMode& m = m_model;
    place(m_label1, m.Label1);
    place(m_label2, m.Label2);
    place(m_friend, m.BtnFriend);
    place(m_edge, m.BtnEdge);
    place(m_foe, m.BtnFoe);
    place(m_down, m.BtnDown);
    place(m_exit, m.BtnExit);
}

}  // namespace halvane::app
