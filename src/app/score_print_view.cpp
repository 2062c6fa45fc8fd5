#include "score_print_view.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "dialog_parts.h"
#include "platform/guarded_application.h"
#include "scores/score_print.h"

namespace halvane::app {

ScorePrintView::ScorePrintView(frmPrint& model, QWidget* parent) : QDialog(parent), m_model(model) {
    setObjectName("frmPrint");
    setWindowTitle(frmPrint::Caption);
    auto* layout = new QVBoxLayout(this);
    auto* headerRow = new QHBoxLayout;
    headerRow->addWidget(new QLabel(frmPrint::Label1));
    m_header = new QLineEdit(QString::fromStdString(model.txtHeader));
    m_header->setObjectName("txtHeader");
    m_header->setMinimumWidth(260);
    headerRow->addWidget(m_header);
    layout->addLayout(headerRow);

    auto* frame = new QGroupBox(frmPrint::Frame1);
    frame->setObjectName("Frame1");
    auto* range = new QHBoxLayout(frame);
    m_option1 = new QRadioButton(QString::fromStdString(model.Option1.Caption));
    m_option1->setObjectName("Option1");
    m_option2 = new QRadioButton(QString::fromStdString(model.Option2.Caption));
    m_option2->setObjectName("Option2");
    (model.option2Selected ? m_option2 : m_option1)->setChecked(true);
    m_range = new QLineEdit(QString::fromStdString(model.txtRange));
    m_range->setObjectName("txtRange");
    m_range->setMaximumWidth(60);
    range->addWidget(m_option1);
    range->addWidget(m_option2);
    range->addWidget(m_range);
    range->addStretch();
    layout->addWidget(frame);

    const OkCancel buttons = okCancelRow();
    QPushButton* ok = buttons.ok;
    QPushButton* cancel = buttons.cancel;
    layout->addLayout(buttons.row);

    connect(ok, &QPushButton::clicked, this, [this] {
        GuardedApplication::handle([this] {
            m_model.txtHeader = m_header->text().toStdString();
            m_model.option2Selected = m_option2->isChecked();
            m_model.txtRange = m_range->text().toStdString();
            m_model.OKButton_Click();
        });
        accept();
    });
    connect(cancel, &QPushButton::clicked, this, [this] {
        GuardedApplication::handle([this] { m_model.CancelButton_Click(); });
        reject();
    });
    // The close box leaves the window's mailbox and strings as they stood.
}

}  // namespace halvane::app
