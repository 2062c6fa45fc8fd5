#include "radio_setup_view.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <QValidator>

#include "links/radio_setup.h"
#include "platform/guarded_application.h"

namespace halvane::app {

namespace {

QString q(const std::string& s) {
    return QString::fromStdString(s);
}

// The serial number box lets through only the keys the window's key rule passes, typed or pasted.
class KeyRuleValidator : public QValidator {
  public:
    using QValidator::QValidator;
    State validate(QString& input, int&) const override {
        for (const QChar c : input)
            if (frmRadioSetup::txtLMSN_KeyPress(c.unicode()) == 0) return Invalid;
        return Acceptable;
    }
};

QComboBox* comboBox(const char* name, const std::vector<std::string>& items, bool editable) {
    auto* box = new QComboBox;
    box->setObjectName(name);
    box->setEditable(editable);
    for (const std::string& item : items) box->addItem(q(item));
    return box;
}

}  // namespace

RadioSetupView::RadioSetupView(frmRadioSetup& model, QWidget* parent) : QDialog(parent), m_model(model) {
    setObjectName("frmRadioSetup");
    setWindowTitle(frmRadioSetup::Caption);
    auto* layout = new QVBoxLayout(this);
    for (const std::string* note : {&model.Label3, &model.Label4, &model.Label5}) {
        QString text = q(*note);
        text.replace('\r', '\n');
        layout->addWidget(new QLabel(text));
    }
    auto* form = new QFormLayout;
    m_radio = comboBox("CmbRadio", model.CmbRadioList, false);
    m_channel = comboBox("cmbchannel", model.cmbchannelList, true);
    m_port = comboBox("cmbComPort", model.cmbComPortList, false);
    m_serial = new QLineEdit;
    m_serial->setObjectName("txtLMSN");
    m_serial->setValidator(new KeyRuleValidator(m_serial));
    m_serialLabel = new QLabel(q(model.lbllmsn.Caption));
    form->addRow(frmRadioSetup::Label1, m_radio);
    form->addRow(frmRadioSetup::Label2, m_channel);
    form->addRow(QString(), new QLabel(frmRadioSetup::Label7));
    form->addRow(frmRadioSetup::Label6, m_port);
    form->addRow(m_serialLabel, m_serial);
    layout->addLayout(form);

    connect(m_radio, &QComboBox::textActivated, this, [this](const QString& text) {
        act([this, text] {
            m_model.CmbRadio = text.toStdString();
            m_model.CmbRadio_Click();
        });
    });
    connect(m_channel, &QComboBox::editTextChanged, this,
            [this](const QString& text) { m_model.cmbchannel = text.toStdString(); });
    connect(m_port, &QComboBox::currentTextChanged, this,
            [this](const QString& text) { m_model.cmbComPort = text.toStdString(); });
    connect(m_serial, &QLineEdit::textChanged, this,
            [this](const QString& text) { m_model.txtLMSN = text.toStdString(); });

    auto* buttons = new QHBoxLayout;
    const struct {
        const Control& control;
        const char* name;
        std::function<void()> click;
    } commands[] = {{model.Command1, "Command1", [this] { m_model.Command1_Click(); }},
                    {model.Command3, "Command3", [this] { m_model.Command3_Click(); }},
                    {model.Command2, "Command2", [this] { m_model.Command2_Click(); }}};
    for (const auto& command : commands) {
        auto* b = new QPushButton(q(command.control.Caption));
        b->setObjectName(command.name);
        b->setAutoDefault(false);
        connect(b, &QPushButton::clicked, this, [this, click = command.click] { act(click); });
        buttons->addWidget(b);
    }
    layout->addLayout(buttons);
    refresh();
}

void RadioSetupView::act(const std::function<void()>& handler) {
    GuardedApplication::handle(handler);
    refresh();
    if (m_model.closed()) QDialog::done(Accepted);
}

void RadioSetupView::refresh() {
    m_radio->setCurrentText(q(m_model.CmbRadio));
    if (m_channel->currentText() != q(m_model.cmbchannel)) m_channel->setEditText(q(m_model.cmbchannel));
    m_port->setCurrentText(q(m_model.cmbComPort));
    if (m_serial->text() != q(m_model.txtLMSN)) m_serial->setText(q(m_model.txtLMSN));
    // The window closes up around the serial box when it goes, and opens again when it comes back.
    if (m_serial->isVisibleTo(this) != m_model.lbllmsn.Visible) {
        m_serialLabel->setVisible(m_model.lbllmsn.Visible);
        m_serial->setVisible(m_model.lbllmsn.Visible);
        layout()->activate();
        adjustSize();
    }
}

void RadioSetupView::done(int result) {
    GuardedApplication::handle([this] { m_model.Command2_Click(); });
    QDialog::done(result);
}

}  // namespace halvane::app
