#include "target_setup_view.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

#include "dialog_parts.h"
#include "platform/guarded_application.h"
#include "scores/target_setup.h"

namespace halvane::app {

namespace {
QString q(const std::string& s) {
    return QString::fromStdString(s);
}
}  // namespace

TargetSetupView::TargetSetupView(frmLM_Setup& model, QWidget* parent) : QDialog(parent), m_model(model) {
    setObjectName("frmLM_Setup");
    setWindowTitle(frmLM_Setup::Caption);
    setMinimumSize(460, 330);
    auto* layout = new QVBoxLayout(this);
    auto* top = new QHBoxLayout;
    m_serial = new QLabel;
    m_serial->setObjectName("LBL_SN");
    top->addWidget(m_serial);
    top->addStretch();
    m_read = new QPushButton(q(model.Command1.Caption));
    m_read->setObjectName("Command1");
    m_save = new QPushButton(q(model.Command2.Caption));
    m_save->setObjectName("Command2");
    auto* close = new QPushButton(q(model.Command3.Caption));
    close->setObjectName("Command3");
    for (QPushButton* b : {m_read, m_save, close}) {
        b->setAutoDefault(false);
        top->addWidget(b);
    }
    layout->addLayout(top);

    // One page of labelled boxes for each tab, in the order the tabs stand.
    m_tabs = new QTabWidget;
    m_tabs->setObjectName("SSTab1");
    std::map<std::string, QFormLayout*> pages;
    for (const char* tab : frmLM_Setup::kTabs) {
        auto* page = new QWidget;
        pages[tab] = new QFormLayout(page);
        m_tabs->addTab(page, tab);
    }
    for (const target::Parameter* parameter : target::tabOrder()) {
        const target::Parameter& p = *parameter;
        QFormLayout* page = pages.at(p.tab);
        if (p.writable) {
            auto* box = new QComboBox;
            box->setObjectName(p.control);
            box->setEditable(true);
            for (const std::string& item : model.list(p)) box->addItem(q(item));
            const int index = p.index;
            connect(box, &QComboBox::editTextChanged, this,
                    [this, index](const QString& text) { m_model.box(index) = text.toStdString(); });
            page->addRow(p.caption, box);
            m_boxes[p.index] = box;
        } else {
            auto* label = new QLabel;
            label->setObjectName(p.control);
            label->setFrameStyle(QFrame::Panel | QFrame::Sunken);
            page->addRow(p.caption, label);
            m_labels[p.index] = label;
        }
    }
    auto* defaults = new QCheckBox("Load Defaults");
    defaults->setObjectName("Check1");
    defaults->setChecked(model.Check1);
    connect(defaults, &QCheckBox::toggled, this, [this](bool on) { m_model.Check1 = on; });
    pages.at("Utility")->addRow(defaults);
    layout->addWidget(m_tabs);

    connect(m_read, &QPushButton::clicked, this, [this] { act([this] { m_model.Command1_Click(); }); });
    connect(m_save, &QPushButton::clicked, this, [this] { act([this] { m_model.Command2_Click(); }); });
    connect(close, &QPushButton::clicked, this, [this] { act([this] { m_model.Command3_Click(); }); });
    refresh();
}

void TargetSetupView::act(const std::function<void()>& handler) {
    GuardedApplication::handle(handler);
    refresh();
    if (m_model.closed()) accept();
}

void TargetSetupView::refresh() {
    m_serial->setText(q(m_model.LBL_SN.Caption));
    m_save->setEnabled(m_model.Command2.Enabled);
    for (auto& [index, box] : m_boxes) {
        const QString text = q(m_model.box(index));
        if (box->currentText() != text) box->setEditText(text);
    }
    for (auto& [index, label] : m_labels) label->setText(q(m_model.box(index)));
}

SerialTargetView::SerialTargetView(frmSerialTarget& model, QWidget* parent)
    : QDialog(parent), m_model(model) {
    setObjectName("frmSerialTarget");
    setWindowTitle(frmSerialTarget::Caption);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(frmSerialTarget::Label3));
    auto* form = new QFormLayout;
    m_serial = new QLineEdit;
    m_serial->setObjectName("txtSerialNum");
    m_number = new QLineEdit;
    m_number->setObjectName("txtTargetNum");
    form->addRow("Serial Number", m_serial);
    form->addRow("Target Number", m_number);
    layout->addLayout(form);
    const OkCancel buttons = okCancelRow();
    QPushButton* ok = buttons.ok;
    QPushButton* cancel = buttons.cancel;
    layout->addLayout(buttons.row);
    connect(ok, &QPushButton::clicked, this, [this] {
        GuardedApplication::handle([this] {
            m_model.txtSerialNum = m_serial->text().toStdString();
            m_model.txtTargetNum = m_number->text().toStdString();
            m_model.OKButton_Click();
        });
        accept();
    });
    connect(cancel, &QPushButton::clicked, this, [this] {
        GuardedApplication::handle([this] { m_model.CancelButton_Click(); });
        reject();
    });
    // The close box leaves the mailbox as it stood.
}

}  // namespace halvane::app
