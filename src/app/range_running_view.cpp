#include "range_running_view.h"

#include <QCloseEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <chrono>

#include "platform/guarded_application.h"
#include "platform/twips.h"
#include "range/range_running.h"
#include "range_view_widget.h"

namespace halvane::app {

namespace {
TimePoint now() {
    return std::chrono::steady_clock::now();
}

QPushButton* button(const char* name, const Control& control, QWidget* parent) {
    auto* b = new QPushButton(QString::fromStdString(control.Caption), parent);
    b->setObjectName(name);
    return b;
}

QLabel* label(const char* name, const Control& control, QWidget* parent) {
    auto* l = new QLabel(QString::fromStdString(control.Caption), parent);
    l->setObjectName(name);
    return l;
}
}  // namespace

RangeRunningView::RangeRunningView(frmRangeRunning& model, QWidget* parent)
    : QDialog(parent), m_model(model) {
    setObjectName("frmRangeRunning");
    setWindowTitle(frmRangeRunning::Caption);
    m_label1 = label("Label1", model.Label1, this);
    m_label1->setAlignment(Qt::AlignCenter);
    m_connect = button("BtnConnect", model.BtnConnect, this);
    m_start = button("BtnStart", model.BtnStart, this);
    m_stop = button("BtnStop", model.BtnStop, this);
    m_exit = button("BtnExit", model.BtnExit, this);
    m_paused = label("lblPaused", model.lblPaused, this);
    m_paused->setAlignment(Qt::AlignCenter);
    QFont bold = m_paused->font();
    bold.setBold(true);
    m_paused->setFont(bold);
    m_timer = new QLineEdit(this);
    m_timer->setObjectName("txtTimer");
    m_timer->setAlignment(Qt::AlignRight);
    m_label2 = label("Label2", model.Label2, this);
    m_getHits = button("BtnGetHitScores", model.BtnGetHitScores, this);
    m_clearHits = button("BtnClearHitScores", model.BtnClearHitScores, this);
    m_range = new RangeViewWidget(model.view(), this);
    m_start->setDefault(true);

    connect(m_connect, &QPushButton::clicked, this, [this] { act([this] { m_model.BtnConnect_Click(); }); });
    connect(m_start, &QPushButton::clicked, this, [this] {
        act([this] {
            m_model.txtTimer.Caption = m_timer->text().toStdString();
            m_model.BtnStart_Click(now());
        });
    });
    connect(m_stop, &QPushButton::clicked, this, [this] { act([this] { m_model.BtnStop_Click(); }); });
    connect(m_exit, &QPushButton::clicked, this, [this] { act([this] { m_model.BtnExit_Click(); }); });
    connect(m_timer, &QLineEdit::textEdited, this,
            [this](const QString& text) { m_model.txtTimer.Caption = text.toStdString(); });
    // Steps that fall due, and a line that goes away, change the window of themselves.
    model.setChangeObserver([this] { refresh(); });
    if (auto* app = GuardedApplication::instance()) {
        app->deadlines().add(model);
        m_onClock = true;
    }

    const WindowPlacement& p = model.placement;
    const int width = p.Width > 0 ? toPixels(p.Width) : 720;
    const int height = p.Height > 0 ? toPixels(p.Height) : 640;
    resize(width, height);
    if (p.Width > 0) move(toPixels(p.Left), toPixels(p.Top));
    refresh();
}

RangeRunningView::~RangeRunningView() {
    stopClock();
    m_model.setChangeObserver({});
}

void RangeRunningView::stopClock() {
    if (!m_onClock) return;
    m_onClock = false;
    if (auto* app = GuardedApplication::instance()) app->deadlines().remove(m_model);
}

void RangeRunningView::act(const std::function<void()>& handler) {
    GuardedApplication::handle(handler);
    refresh();
    if (m_model.closed() && !m_closing) close();
}

void RangeRunningView::place(QWidget* widget, const Control& control) {
    widget->setGeometry(toPixels(control.Left), toPixels(control.Top), toPixels(control.Width),
                        toPixels(control.Height));
    widget->setVisible(control.Visible);
    widget->setEnabled(control.Enabled);
    if (auto* b = qobject_cast<QPushButton*>(widget)) b->setText(QString::fromStdString(control.Caption));
}

void RangeRunningView::refresh() {
    const frmRangeRunning& m = m_model;
    place(m_label1, m.Label1);
    place(m_connect, m.BtnConnect);
    place(m_start, m.BtnStart);
    place(m_stop, m.BtnStop);
    place(m_exit, m.BtnExit);
    place(m_paused, m.lblPaused);
    place(m_timer, m.txtTimer);
    place(m_label2, m.Label2);
    place(m_getHits, m.BtnGetHitScores);
    place(m_clearHits, m.BtnClearHitScores);
    place(m_range, m.picScrollBox);
    const QString shown = QString::fromStdString(m.txtTimer.Caption);
    if (m_timer->text() != shown) m_timer->setText(shown);
    // While a run holds it the timer box reads as a label.
    m_timer->setReadOnly(m.txtTimerLocked);
    m_timer->setFrame(!m.txtTimerLocked);
    QPalette palette = m_timer->palette();
    palette.setColor(QPalette::Base, m.txtTimerLocked ? this->palette().color(QPalette::Window)
                                                      : this->palette().color(QPalette::Base));
    m_timer->setPalette(palette);
}

void RangeRunningView::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    act([this] {
        m_model.Resize(static_cast<float>(toTwips(width())), static_cast<float>(toTwips(height())));
    });
}

void RangeRunningView::closeEvent(QCloseEvent* event) {
    m_closing = true;
    stopClock();
    WindowPlacement& p = m_model.placement;
    p.Left = toTwips(frameGeometry().x());
    p.Top = toTwips(frameGeometry().y());
    p.Width = toTwips(width());
    p.Height = toTwips(height());
    p.WindowState = isMinimized() ? 1 : isMaximized() ? 2 : 0;
    frmRangeRunning& model = m_model;
    GuardedApplication::handle([&model] {
        model.QueryUnload();
        model.Unload();
    });
    event->accept();
    QDialog::closeEvent(event);
    done(QDialog::Accepted);
}

void RangeRunningView::reject() {
    act([this] { m_model.BtnExit_Click(); });
}

}  // namespace halvane::app
