#include "about_dialog.h"

#include <QGridLayout>
#include <QIcon>
#include <QLabel>
#include <QPushButton>

#include "authoring/about_box.h"

namespace halvane::app {

AboutDialog::AboutDialog(const AboutBox& model, QWidget* parent) : QDialog(parent) {
    setWindowTitle(QString::fromStdString(model.Caption));
    auto* layout = new QGridLayout(this);
    auto* picture = new QLabel;
    picture->setPixmap(QIcon(":/halvane.svg").pixmap(64, 64));
    layout->addWidget(picture, 0, 0, 4, 1, Qt::AlignTop);
    auto* title = new QLabel(QString::fromStdString(model.lblTitle));
    title->setObjectName("lblTitle");
    QFont big = title->font();
    big.setPointSizeF(big.pointSizeF() * 1.6);
    big.setBold(true);
    title->setFont(big);
    layout->addWidget(title, 0, 1);
    auto* version = new QLabel(QString::fromStdString(model.lblVersion));
    version->setObjectName("lblVersion");
    layout->addWidget(version, 1, 1);
    auto* description = new QLabel(QString::fromStdString(model.lblDescription));
    description->setWordWrap(true);
    layout->addWidget(description, 2, 1);
    auto* disclaimer = new QLabel(QString::fromStdString(model.lblDisclaimer));
    disclaimer->setWordWrap(true);
    layout->addWidget(disclaimer, 3, 1);
    auto* ok = new QPushButton("OK");
    ok->setObjectName("cmdOK");
    ok->setDefault(true);
    layout->addWidget(ok, 4, 1, Qt::AlignRight);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    setMinimumWidth(420);
}

}  // namespace halvane::app
