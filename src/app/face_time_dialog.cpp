#include "face_time_dialog.h"

#include <QButtonGroup>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <QRadioButton>
#include <QVBoxLayout>
#include "dialog_parts.h"
#include "platform/guarded_application.h"

#include "authoring/face_time.h"

namespace halvane::app {

namespace {
// One "Action" group with its four option buttons, named as the dialog's controls are.
QGroupBox* actionGroup(const char* frame, const char* suffix, QButtonGroup* buttons, QWidget* parent) {
    auto* box = new QGroupBox("Action", parent);
    box->setObjectName(frame);
    auto* layout = new QVBoxLayout(box);
    layout->addWidget(new QLabel("Action"));
    const char* names[] = {"OptFriend", "OptFoe", "OptEdge", "OptDown"};
    for (int i = 0; i < Face_time::kOptions; ++i) {
        auto* option = new QRadioButton(Face_time::kOptionCaptions[i]);
        option->setObjectName(QString(names[i]) + suffix);
        buttons->addButton(option, i);
        layout->addWidget(option);
    }
    return box;
}
}  // namespace

FaceTimeDialog::FaceTimeDialog(Face_time& model, QWidget* parent) : QDialog(parent), m_model(model) {
    setWindowTitle(Face_time::Caption);
    setObjectName("Face_time");
    m_first = new QButtonGroup(this);
    m_second = new QButtonGroup(this);
    auto* layout = new QVBoxLayout(this);
    auto* groups = new QHBoxLayout;
    groups->addWidget(actionGroup("Frame1", "", m_first, this));

    auto* time = new QVBoxLayout;
    time->addWidget(new QLabel("Time"));
    auto* row = new QHBoxLayout;
    m_text1 = new QLineEdit(QString::fromStdString(model.Text1));
    m_text1->setObjectName("Text1");
    m_text1->setMaximumWidth(70);
    row->addWidget(m_text1);
    row->addWidget(new QLabel("Sec."));
    time->addLayout(row);
    auto* steps = new QHBoxLayout;
    auto* plus = stepButton("CmdPlus", "+");
    auto* minus = stepButton("CmdMinus", "-");
    steps->addWidget(plus);
    steps->addWidget(minus);
    time->addLayout(steps);
    time->addStretch();
    groups->addLayout(time);
    groups->addWidget(actionGroup("Frame2", "2", m_second, this));
    layout->addLayout(groups);

    const OkCancel buttons = okCancelRow();
    layout->addLayout(buttons.row);

    connect(plus, &QPushButton::clicked, this, [this] { act(&Face_time::CmdPlus); });
    connect(minus, &QPushButton::clicked, this, [this] { act(&Face_time::CmdMinus); });
    connect(buttons.ok, &QPushButton::clicked, this, [this] { act(&Face_time::OKButton); });
    connect(buttons.cancel, &QPushButton::clicked, this, [this] { act(&Face_time::CancelButton); });
}

// Hands the controls to the model, runs the handler and shows the outcome.
void FaceTimeDialog::act(void (Face_time::*handler)()) {
    m_model.Text1 = m_text1->text().toStdString();
    if (m_first->checkedId() >= 0) m_model.setFirst(static_cast<Face_time::Option>(m_first->checkedId()));
    if (m_second->checkedId() >= 0) m_model.setSecond(static_cast<Face_time::Option>(m_second->checkedId()));
    Face_time& model = m_model;
    GuardedApplication::handle([&model, handler] { (model.*handler)(); });
    m_text1->setText(QString::fromStdString(m_model.Text1));
    if (m_model.closed()) accept();
}

}  // namespace halvane::app
