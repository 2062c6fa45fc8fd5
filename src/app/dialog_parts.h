#pragma once
// Pieces the console's dialogs are built from, named as the dialogs' controls are.

class QHBoxLayout;
class QPushButton;

namespace halvane::app {

// A narrow "+" or "-" button.
QPushButton* stepButton(const char* name, const char* caption);

// OK (the default button, "OKButton") and Cancel ("CancelButton") at the right end of a row.
struct OkCancel {
    QHBoxLayout* row;
    QPushButton* ok;
    QPushButton* cancel;
};
OkCancel okCancelRow();

}  // namespace halvane::app
