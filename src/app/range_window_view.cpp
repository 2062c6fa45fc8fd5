#include "range_window_view.h"

#include <QCloseEvent>
#include <QLabel>
#include <QPushButton>
#include <chrono>

#include "platform/guarded_application.h"
#include "platform/twips.h"
#include "range/range_window.h"
#include "range_view_widget.h"

namespace halvane::app {

namespace {
TimePoint now() {
    return std::chrono::steady_clock::now();
}
}  // namespace

RangeWindowView::RangeWindowView(RangeWindow& model, const char* name, const char* caption, QWidget* parent)
    : QDialog(parent), m_model(model) {
    setObjectName(name);
    setWindowTitle(caption);
    m_getHits = button("BtnGetHitScores", model.BtnGetHitScores);
    m_clearHits = button("BtnClearHitScores", model.BtnClearHitScores);
    m_progress = new QLabel(this);
    m_progress->setObjectName("pollProgress");
    m_progress->setAlignment(Qt::AlignCenter);
    m_range = new RangeViewWidget(model.view(), this);
    connect(m_getHits, &QPushButton::clicked, this,
            [this] { act([this] { m_model.BtnGetHitScores_Click(now()); }); });
    connect(m_clearHits, &QPushButton::clicked, this,
            [this] { act([this] { m_model.BtnClearHitScores_Click(now()); }); });
    // The clock, a poll and a line that goes away change the window of themselves.
    model.setChangeObserver([this] { refresh(); });
    if (auto* app = GuardedApplication::instance()) {
        app->deadlines().add(model);
        m_onClock = true;
    }
}

RangeWindowView::~RangeWindowView() {
    stopClock();
    m_model.setChangeObserver({});
}

void RangeWindowView::finishSetup() {
    const WindowPlacement& p = m_model.placement;
    const int width = p.Width > 0 ? toPixels(p.Width) : 720;
    const int height = p.Height > 0 ? toPixels(p.Height) : 640;
    resize(width, height);
    if (p.Width > 0) move(toPixels(p.Left), toPixels(p.Top));
    refresh();
}

QPushButton* RangeWindowView::button(const char* name, const Control& control) {
    auto* b = new QPushButton(QString::fromStdString(control.Caption), this);
    b->setObjectName(name);
    b->setAutoDefault(false);
    return b;
}

QLabel* RangeWindowView::label(const char* name, const Control& control) {
    auto* l = new QLabel(QString::fromStdString(control.Caption), this);
    l->setObjectName(name);
    return l;
}

void RangeWindowView::stopClock() {
    if (!m_onClock) return;
    m_onClock = false;
    if (auto* app = GuardedApplication::instance()) app->deadlines().remove(m_model);
}

void RangeWindowView::act(const std::function<void()>& handler) {
    GuardedApplication::handle(handler);
    refresh();
    if (m_model.closed() && !m_closing) close();
}

void RangeWindowView::place(QWidget* widget, const Control& control) {
    widget->setGeometry(toPixels(control.Left), toPixels(control.Top), toPixels(control.Width),
                        toPixels(control.Height));
    widget->setVisible(control.Visible);
    widget->setEnabled(control.Enabled);
    if (auto* b = qobject_cast<QPushButton*>(widget)) b->setText(QString::fromStdString(control.Caption));
}

void RangeWindowView::refresh() {
    const RangeWindow& m = m_model;
    place(m_getHits, m.BtnGetHitScores);
    place(m_clearHits, m.BtnClearHitScores);
    place(m_range, m.picScrollBox);
    // The progress of a poll stands between the two hit score buttons.
    const QRect get = m_getHits->geometry(), clear = m_clearHits->geometry();
    m_progress->setGeometry(get.right() + 8, get.top(), std::max(0, clear.left() - get.right() - 16),
                            get.height());
    m_progress->setText(QString::fromStdString(m.pollProgress()));
    m_progress->setVisible(m.polling());
    refreshOwn();
}

void RangeWindowView::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    act([this] {
        m_model.Resize(static_cast<float>(toTwips(width())), static_cast<float>(toTwips(height())));
    });
}

void RangeWindowView::closeEvent(QCloseEvent* event) {
    m_closing = true;
    stopClock();
    WindowPlacement& p = m_model.placement;
    p.Left = toTwips(frameGeometry().x());
    p.Top = toTwips(frameGeometry().y());
    p.Width = toTwips(width());
    p.Height = toTwips(height());
    p.WindowState = isMinimized() ? 1 : isMaximized() ? 2 : 0;
    RangeWindow& model = m_model;
    GuardedApplication::handle([&model] {
        model.QueryUnload();
        model.Unload();
    });
    event->accept();
    QDialog::closeEvent(event);
    done(QDialog::Accepted);
}

void RangeWindowView::reject() {
    act([this] { m_model.Escape(); });
}

}  // namespace halvane::app
