#include "program_setup_dialog.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "dialog_parts.h"
#include "platform/guarded_application.h"

#include "authoring/program_setup.h"

namespace halvane::app {

ProgramSetupDialog::ProgramSetupDialog(Settings& model, QWidget* parent) : QDialog(parent), m_model(model) {
    setWindowTitle(Settings::Caption);
    setObjectName("Settings");
    auto* layout = new QGridLayout(this);
    layout->addWidget(new QLabel(Settings::Label1), 0, 0);
    m_text1 = new QLineEdit(QString::fromStdString(model.Text1));
    m_text1->setObjectName("Text1");
    m_text1->setMaximumWidth(90);
    layout->addWidget(m_text1, 0, 1);
    layout->addWidget(new QLabel(Settings::Label3), 0, 2);
    auto* plus = stepButton("CmdPlus_L", "+");
    auto* minus = stepButton("CmdMinus_L", "-");
    layout->addWidget(plus, 0, 3);
    layout->addWidget(minus, 0, 4);
    const OkCancel buttons = okCancelRow();
    layout->addLayout(buttons.row, 1, 0, 1, 5);

    connect(plus, &QPushButton::clicked, this, [this] { act(&Settings::CmdPlus_L); });
    connect(minus, &QPushButton::clicked, this, [this] { act(&Settings::CmdMinus_L); });
    connect(buttons.ok, &QPushButton::clicked, this, [this] { act(&Settings::OKButton); });
    connect(buttons.cancel, &QPushButton::clicked, this, [this] { act(&Settings::CancelButton); });
}

// Hands the box's text to the model, runs the handler and shows the outcome.
void ProgramSetupDialog::act(void (Settings::*handler)()) {
    m_model.Text1 = m_text1->text().toStdString();
    Settings& model = m_model;
    GuardedApplication::handle([&model, handler] { (model.*handler)(); });
    m_text1->setText(QString::fromStdString(m_model.Text1));
    if (m_model.closed()) accept();
}

}  // namespace halvane::app
