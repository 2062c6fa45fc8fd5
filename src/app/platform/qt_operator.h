#pragma once
// The operator reached through Qt: message boxes, file dialogs, the desktop, and the modal dialogs.

#include <QPointer>
#include <QWidget>

#include "authoring/operator.h"

namespace halvane::app {

class QtOperator : public Operator {
  public:
    // Dialogs are centred on this window once it exists.
    void setParentWindow(QWidget* parent) { m_parent = parent; }

    void tell(const std::string& text, const std::string& title) override;
    Answer ask(const std::string& text, const std::string& title, Buttons buttons) override;
    std::optional<ChosenFile> chooseOpenFile(const FileDialogSetup& setup) override;
    std::optional<ChosenFile> chooseSaveFile(const FileDialogSetup& setup) override;
    void openDocument(const std::string& path) override;
    void showModal(Settings& dialog) override;
    void showModal(AboutBox& dialog) override;
    void setBusy(bool busy) override;

  private:
    std::optional<ChosenFile> chooseFile(const FileDialogSetup& setup, bool save);
    QPointer<QWidget> m_parent;
};

}  // namespace halvane::app
