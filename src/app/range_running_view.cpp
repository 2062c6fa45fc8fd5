#include "range_running_view.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <chrono>

#include "range/range_running.h"

namespace halvane::app {

RangeRunningView::RangeRunningView(frmRangeRunning& model, QWidget* parent)
    : RangeWindowView(model, "frmRangeRunning", frmRangeRunning::Caption, parent), m_model(model) {
    m_label1 = label("Label1", model.Label1);
    m_label1->setAlignment(Qt::AlignCenter);
    m_connect = button("BtnConnect", model.BtnConnect);
    m_start = button("BtnStart", model.BtnStart);
    m_stop = button("BtnStop", model.BtnStop);
    m_exit = button("BtnExit", model.BtnExit);
    m_paused = label("lblPaused", model.lblPaused);
    m_paused->setAlignment(Qt::AlignCenter);
    QFont bold = m_paused->font();
    bold.setBold(true);
    m_paused->setFont(bold);
    m_timer = new QLineEdit(this);
    m_timer->setObjectName("txtTimer");
    m_timer->setAlignment(Qt::AlignRight);
    m_label2 = label("Label2", model.Label2);
    m_start->setDefault(true);

    connect(m_connect, &QPushButton::clicked, this, [this] { act([this] { m_model.BtnConnect_Click(); }); });
    connect(m_start, &QPushButton::clicked, this, [this] {
        act([this] {
            m_model.txtTimer.Caption = m_timer->text().toStdString();
            m_model.BtnStart_Click(std::chrono::steady_clock::now());
        });
    });
    connect(m_stop, &QPushButton::clicked, this, [this] { act([this] { m_model.BtnStop_Click(); }); });
    connect(m_exit, &QPushButton::clicked, this, [this] { act([this] { m_model.BtnExit_Click(); }); });
    connect(m_timer, &QLineEdit::textEdited, this,
            [this](const QString& text) { m_model.txtTimer.Caption = text.toStdString(); });
    finishSetup();
}

void RangeRunningView::refreshOwn() {
    const frmRangeRunning& m = m_model;
    place(m_label1, m.Label1);
    place(m_connect, m.BtnConnect);
    place(m_start, m.BtnStart);
    place(m_stop, m.BtnStop);
    place(m_exit, m.BtnExit);
    place(m_paused, m.lblPaused);
    place(m_timer, m.txtTimer);
    place(m_label2, m.Label2);
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

}  // namespace halvane::app
