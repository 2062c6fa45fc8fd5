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
#include "platform/qt_serial_port.h"

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
    m_deadline.setSingleShot(true);
    connect(&m_deadline, &QTimer::timeout, this, &ProgressView::step);
    // The first tick comes when the window has painted.
    QTimer::singleShot(500, this, &ProgressView::begin);
}

ProgressView::~ProgressView() = default;

void ProgressView::begin() {
    m_runner = std::make_unique<DialogueRunner>(m_model.dialogue, m_model.port, m_operator);
    if (auto* serial = dynamic_cast<QtSerialPort*>(&m_model.port)) {
        connect(serial, &QtSerialPort::bytesArrived, this, [this] {
            if (!m_runner) return;
            m_runner->bytesArrived(now());
            step();
        });
        // A lost line ends the dialogue at once, not at its next deadline.
        connect(serial, &QtSerialPort::lineLost, this, &ProgressView::step);
    } else {
        connect(&m_poll, &QTimer::timeout, this, [this] { m_runner->bytesArrived(now()); });
        m_poll.start(5);
    }
    m_runner->start(now());
    step();
}

// After every event: show progress, close when done, else wait for the dialogue's next deadline.
void ProgressView::step() {
    if (!m_runner) return;
    m_runner->tick(now());
    const auto [done, total] = m_model.dialogue.progress();
    m_bar->setMaximum(std::max(total, 1));
    m_bar->setValue(done);
    if (m_runner->finished()) {
        m_deadline.stop();
        m_poll.stop();
        accept();
        return;
    }
    if (const auto deadline = m_runner->nextDeadline()) {
        const auto wait = std::chrono::duration_cast<std::chrono::milliseconds>(*deadline - now()).count();
        m_deadline.start(static_cast<int>(std::max<long long>(wait, 0)));
    }
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
