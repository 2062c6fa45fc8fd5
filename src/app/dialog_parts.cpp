#include "dialog_parts.h"

#include <QHBoxLayout>
#include <QPushButton>

namespace halvane::app {

QPushButton* stepButton(const char* name, const char* caption) {
    auto* button = new QPushButton(caption);
    button->setObjectName(name);
    button->setFixedWidth(32);
    return button;
}

OkCancel okCancelRow() {
    OkCancel parts{new QHBoxLayout, new QPushButton("OK"), new QPushButton("Cancel")};
    parts.ok->setObjectName("OKButton");
    parts.ok->setDefault(true);
    parts.cancel->setObjectName("CancelButton");
    parts.row->addStretch();
    parts.row->addWidget(parts.ok);
    parts.row->addWidget(parts.cancel);
    return parts;
}

}  // namespace halvane::app
