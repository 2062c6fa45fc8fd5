#include "target_transfer_view.h"

#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>

#include "platform/guarded_application.h"

namespace halvane::app {

TargetTransferView::TargetTransferView(ProgressMachine& model, const std::string& caption,
                                       const std::string& label1, const std::string& label2, QWidget* parent)
    : QDialog(parent), m_model(model) {
    setWindowTitle(QString::fromStdString(caption));
    setObjectName("TargetTransfer");
    setWindowFlag(Qt::WindowCloseButtonHint, false);
    auto* layout = new QVBoxLayout(this);
    for (const std::string& text : {label1, label2})
        if (!text.empty()) layout->addWidget(new QLabel(QString::fromStdString(text)));
    m_bar = new QProgressBar;
    m_bar->setObjectName("progress");
    m_bar->setFormat("%v of %m");
    layout->addWidget(m_bar);
    m_step = new QLabel;
    m_step->setObjectName("step");
    layout->addWidget(m_step);
    setMinimumWidth(320);
    showProgress();
    if (auto* app = GuardedApplication::instance()) {
        app->deadlines().add(*this);
        m_registered = true;
    }
}

TargetTransferView::~TargetTransferView() {
    if (m_registered) GuardedApplication::instance()->deadlines().remove(*this);
}

std::optional<TimePoint> TargetTransferView::nextDeadline() const {
    if (m_model.closed() || m_model.progress() != m_shown) return TimePoint{};
    return m_model.nextDeadline();
}

void TargetTransferView::onTime(TimePoint now) {
    m_model.onTime(now);
    showProgress();
    if (!m_model.closed()) return;
    if (m_registered) GuardedApplication::instance()->deadlines().remove(*this);
    m_registered = false;
    accept();
}

void TargetTransferView::showProgress() {
    m_shown = m_model.progress();
    m_bar->setRange(0, m_shown.second);
    m_bar->setValue(m_shown.first);
    m_step->setText(QString::fromStdString(m_model.progressText()));
}

}  // namespace halvane::app
