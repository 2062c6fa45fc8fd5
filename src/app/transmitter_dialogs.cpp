#include "transmitter_dialogs.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>
#include <chrono>

#include "dialog_parts.h"
#include "links/dialogue_runner.h"
#include "links/transmitter_windows.h"
#include "platform/guarded_application.h"

namespace halvane::app {

namespace {
TimePoint now() {
    return std::chrono::steady_clock::now();
}
}  // namespace

ProgramNumberView::ProgramNumberView(ProgramNumberDialog& model, QWidget* parent)
    : QDialog(parent), m_model(model) {
    setWindowTitle(QString::fromStdString(model.Caption));
    setObjectName(model.Caption == "Send" ? "frmSend" : "frmDownload");
    auto* layout = new QVBoxLayout(this);
    auto* row = new QHBoxLayout;
    row->addWidget(new QLabel(ProgramNumberDialog::Label1));
    m_text1 = new QLineEdit(QString::fromStdString(model.Text1));
    m_text1->setObjectName("Text1");
    m_text1->setMaximumWidth(60);
    row->addWidget(m_text1);
    auto* plus = stepButton("CmdPlus", "+");
    auto* minus = stepButton("CmdMinus", "-");
    row->addWidget(plus);
    row->addWidget(minus);
    layout->addLayout(row);
    const OkCancel buttons = okCancelRow();
    layout->addLayout(buttons.row);
    connect(plus, &QPushButton::clicked, this, [this] { act(&ProgramNumberDialog::CmdPlus); });
    connect(minus, &QPushButton::clicked, this, [this] { act(&ProgramNumberDialog::CmdMinus); });
    connect(buttons.ok, &QPushButton::clicked, this, [this] { act(&ProgramNumberDialog::OKButton); });
    connect(buttons.cancel, &QPushButton::clicked, this, [this] { act(&ProgramNumberDialog::CancelButton); });
}

void ProgramNumberView::act(void (ProgramNumberDialog::*handler)()) {
    m_model.Text1 = m_text1->text().toStdString();
    ProgramNumberDialog& model = m_model;
    GuardedApplication::handle([&model, handler] { (model.*handler)(); });
    m_text1->setText(QString::fromStdString(m_model.Text1));
    if (m_model.closed()) accept();
}

ProgressView::ProgressView(ProgressWindow& model, Operator& op, QWidget* parent)
    : QDialog(parent), m_model(model), m_operator(op) {
    setWindowTitle(QString::fromStdString(model.Caption));
    setObjectName("ProgressWindow");
    setWindowFlag(Qt::WindowCloseButtonHint, false);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(QString::fromStdString(model.Label1)));
    layout->addWidget(new QLabel(QString::fromStdString(model.Label2)));
    m_bar = new QProgressBar;
    m_bar->setObjectName("progress");
    m_bar->setFormat("Block %v of %m");
    layout->addWidget(m_bar);
    setMinimumWidth(320);
    // The first tick comes when the window has painted.
    m_beginAt = now() + std::chrono::milliseconds(500);
    if (auto* app = GuardedApplication::instance()) {
        app->deadlines().add(*this);
        m_registered = true;
    }
}

ProgressView::~ProgressView() {
    if (m_registered) GuardedApplication::instance()->deadlines().remove(*this);
}

std::optional<TimePoint> ProgressView::nextDeadline() const {
    if (!m_runner) return m_beginAt;
    if (m_runner->finished() || m_model.dialogue.progress() != m_shown) return TimePoint{};
    return m_runner->nextDeadline();
}

void ProgressView::onTime(TimePoint now) {
    if (!m_runner) {
        m_runner = std::make_unique<DialogueRunner>(m_model.dialogue, m_model.port, m_operator);
        m_runner->start(now);
    } else if (const auto deadline = m_runner->nextDeadline(); deadline && *deadline <= now) {
        m_runner->tick(now);
    }
    showProgress(m_model.dialogue.progress());
    if (m_runner->finished()) {
        if (m_registered) GuardedApplication::instance()->deadlines().remove(*this);
        m_registered = false;
        accept();
    }
}

void ProgressView::showProgress(std::pair<int, int> progress) {
    m_shown = progress;
    const auto [done, total] = progress;
    m_bar->setMaximum(std::max(total, 1));
    m_bar->setValue(done);
}

FailedView::FailedView(QWidget* parent) : QDialog(parent) {
    setWindowTitle(FailedBox::Caption);
    setObjectName("frmFailed");
    auto* layout = new QVBoxLayout(this);
    for (const char* text : {FailedBox::Label1, FailedBox::Label2, FailedBox::Label3}) {
        auto* label = new QLabel(text);
        label->setWordWrap(true);
        layout->addWidget(label);
    }
    auto* ok = new QPushButton("OK");
    ok->setObjectName("OKButton");
    ok->setDefault(true);
    layout->addWidget(ok, 0, Qt::AlignRight);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    setMinimumWidth(380);
}

}  // namespace halvane::app
