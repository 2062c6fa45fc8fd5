#include "ethernet_setup_dialog.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <chrono>

#include "links/ethernet_setup.h"

namespace halvane::app {

EthernetSetupDialog::EthernetSetupDialog(frmEthernetSetup& model, QWidget* parent)
    : QDialog(parent), m_model(model) {
    setWindowTitle(frmEthernetSetup::Caption);
    setObjectName("frmEthernetSetup");
    auto* layout = new QGridLayout(this);
    layout->addWidget(new QLabel("Server IP Address"), 0, 0);
    m_ip = new QLineEdit(QString::fromStdString(model.txtbxServerIP()));
    m_ip->setObjectName("txtbxServerIP");
    layout->addWidget(m_ip, 0, 1);
    layout->addWidget(new QLabel("Server Port"), 1, 0);
    m_port = new QLineEdit(QString::fromStdString(model.txtbxServerPort()));
    m_port->setObjectName("txtbxServerPort");
    layout->addWidget(m_port, 1, 1);
    layout->addWidget(new QLabel("Ethernet Status:"), 2, 0);
    m_status = new QLabel;
    m_status->setObjectName("lblEthernetStatus");
    layout->addWidget(m_status, 2, 1);
    m_connect = new QPushButton;
    m_connect->setObjectName("btnEthernetConnect");
    layout->addWidget(m_connect, 3, 1, Qt::AlignLeft);
    m_log = new QPlainTextEdit;
    m_log->setObjectName("txtbxEthernetData");
    m_log->setReadOnly(true);
    layout->addWidget(m_log, 4, 0, 1, 2);
    m_ip->setEnabled(model.serverFieldsEnabled);
    m_port->setEnabled(model.serverFieldsEnabled);
    resize(420, 360);

    connect(m_ip, &QLineEdit::textEdited, this,
            [this](const QString& text) { m_model.txtbxServerIP() = text.toStdString(); });
    connect(m_port, &QLineEdit::textEdited, this,
            [this](const QString& text) { m_model.txtbxServerPort() = text.toStdString(); });
    connect(m_connect, &QPushButton::clicked, this, [this] {
        m_model.btnEthernetConnect_Click(std::chrono::steady_clock::now());
        fromModel();
    });
    // The connect runs on while the window paints; its end shows here.
    connect(&m_refresh, &QTimer::timeout, this, [this] {
        m_model.refreshLog();
        fromModel();
    });
    m_refresh.start(100);
    fromModel();
}

void EthernetSetupDialog::fromModel() {
    m_status->setText(m_model.busy() ? "Connecting" : QString::fromStdString(m_model.lblEthernetStatus));
    m_connect->setText(QString::fromStdString(m_model.btnEthernetConnect));
    m_connect->setEnabled(!m_model.busy());
    const QString log = QString::fromLatin1(m_model.txtbxEthernetData);
    if (m_log->toPlainText() != log) {
        m_log->setPlainText(log);
        m_log->moveCursor(QTextCursor::End);
    }
}

}  // namespace halvane::app
