#include "setup_dialog_view.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <QRadioButton>
#include <QVBoxLayout>
#include "dialog_parts.h"
#include "platform/guarded_application.h"

#include "console/setup_dialog.h"

namespace halvane::app {

SetupDialog::SetupDialog(frmDisplay& model, QWidget* parent) : QDialog(parent), m_model(model) {
    setWindowTitle(frmDisplay::Caption);
    setObjectName("frmDisplay");
    auto* layout = new QGridLayout(this);

    // A frame of option buttons, exclusive among themselves, each bound to its model member.
    auto options = [this](const char* name, const char* caption,
                          std::initializer_list<std::tuple<const char*, const char*, bool*>> buttons) {
        auto* box = new QGroupBox(caption);
        box->setObjectName(name);
        auto* boxLayout = new QVBoxLayout(box);
        auto* group = new QButtonGroup(box);
        for (const auto& [buttonName, buttonCaption, member] : buttons) {
            auto* radio = new QRadioButton(buttonCaption);
            radio->setObjectName(buttonName);
            group->addButton(radio);
            boxLayout->addWidget(radio);
            m_options.emplace_back(radio, member);
        }
        return box;
    };
    layout->addWidget(
        options("Frame1", "Target 1",
                {{"optBottom", "Bottom Left", &m_model.optBottom}, {"optTop", "Top Left", &m_model.optTop}}),
        0, 0);
    layout->addWidget(options("Frame2", "Icons",
                              {{"optSmall", "Small", &m_model.optSmall},
                               {"OptMed", "Medium", &m_model.OptMed},
                               {"optLarge", "Large", &m_model.optLarge}}),
                      1, 0);

    QGroupBox* program = options(
        "Frame3", "Program",
        {{"optNumbers", "Target Numbers", &m_model.optNumbers}, {"optGroups", "Groups", &m_model.optGroups}});
    auto* numbers = new QGridLayout;
    m_cols = new QLineEdit;
    m_cols->setObjectName("Txt_NumCols");
    m_targets = new QLineEdit;
    m_targets->setObjectName("Txt_NumTargets");
    auto* command7 = stepButton("Command7", "-");
    auto* command8 = stepButton("Command8", "+");
    auto* command9 = stepButton("Command9", "-");
    auto* command10 = stepButton("Command10", "+");
    numbers->addWidget(new QLabel("Number of Target Per Row"), 0, 0, 1, 3);
    numbers->addWidget(command7, 1, 0);
    numbers->addWidget(m_cols, 1, 1);
    numbers->addWidget(command8, 1, 2);
    numbers->addWidget(new QLabel("Number of Targets (1-200)"), 2, 0, 1, 3);
    numbers->addWidget(command9, 3, 0);
    numbers->addWidget(m_targets, 3, 1);
    numbers->addWidget(command10, 3, 2);
    static_cast<QVBoxLayout*>(program->layout())->addLayout(numbers);
    layout->addWidget(program, 0, 1, 2, 1);

    layout->addWidget(options("Frame4", "Target Type",
                              {{"OptLM_Series", "LM Series", &m_model.OptLM_Series},
                               {"OptVMR", "VMR4000", &m_model.OptVMR},
                               {"OptNX_Box", "NX Box", &m_model.OptNX_Box}}),
                      0, 2);
    auto* radio = new QGroupBox("Radio");
    radio->setObjectName("Frame5");
    auto* radioLayout = new QVBoxLayout(radio);
    for (const auto& [name, caption, member] :
         {std::tuple{"cb_USB", "USB", &m_model.cb_USB}, std::tuple{"cb_LMC", "LMC", &m_model.cb_LMC},
          std::tuple{"cb_Wifi", "Wi-Fi", &m_model.cb_Wifi}}) {
        auto* check = new QCheckBox(caption);
        check->setObjectName(name);
        radioLayout->addWidget(check);
        m_checks.emplace_back(check, member);
    }
    layout->addWidget(radio, 1, 2);
    layout->addWidget(options("Frame6", "Interface",
                              {{"optLeftClick", "Left-click", &m_model.optLeftClick},
                               {"optRightClick", "Right-click", &m_model.optRightClick}}),
                      2, 0);

    const OkCancel buttons = okCancelRow();
    layout->addLayout(buttons.row, 2, 1, 1, 2, Qt::AlignBottom);

    connect(command7, &QPushButton::clicked, this, [this] { act(&frmDisplay::Command7); });
    connect(command8, &QPushButton::clicked, this, [this] { act(&frmDisplay::Command8); });
    connect(command9, &QPushButton::clicked, this, [this] { act(&frmDisplay::Command9); });
    connect(command10, &QPushButton::clicked, this, [this] { act(&frmDisplay::Command10); });
    connect(buttons.ok, &QPushButton::clicked, this, [this] { act(&frmDisplay::OKButton); });
    connect(buttons.cancel, &QPushButton::clicked, this, [this] { act(&frmDisplay::CancelButton); });
    fromModel();
}

void SetupDialog::reject() {
    act(&frmDisplay::CancelButton);
    QDialog::reject();
}

void SetupDialog::toModel() {
    for (auto& [radio, member] : m_options) *member = radio->isChecked();
    for (auto& [check, member] : m_checks) *member = check->isChecked() ? 1 : 0;
    m_model.Txt_NumCols = m_cols->text().toStdString();
    m_model.Txt_NumTargets = m_targets->text().toStdString();
}

void SetupDialog::fromModel() {
    for (auto& [radio, member] : m_options) {
        // An exclusive group cannot clear its last checked button by itself.
        radio->group()->setExclusive(false);
        radio->setChecked(*member);
        radio->group()->setExclusive(true);
    }
    for (auto& [check, member] : m_checks) check->setChecked(*member == 1);
    m_cols->setText(QString::fromStdString(m_model.Txt_NumCols));
    m_targets->setText(QString::fromStdString(m_model.Txt_NumTargets));
}

void SetupDialog::act(void (frmDisplay::*handler)()) {
    toModel();
    frmDisplay& model = m_model;
    GuardedApplication::handle([&model, handler] { (model.*handler)(); });
    fromModel();
    if (m_model.closed()) accept();
}

}  // namespace halvane::app
