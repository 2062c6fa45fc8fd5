#pragma once
// The operator reached through Qt: message boxes, file dialogs, the desktop, and the modal dialogs.

#include <QPointer>
#include <QWidget>
#include <functional>

#include "authoring/operator.h"

namespace halvane::app {

class QtOperator : public Operator {
  public:
    // Dialogs are centred on this window once it exists.
    void setParentWindow(QWidget* parent) { m_parent = parent; }

    void tell(const std::string& text, const std::string& title) override;
    void critical(const std::string& text, const std::string& title) override;
    Answer ask(const std::string& text, const std::string& title, Buttons buttons) override;
    std::optional<ChosenFile> chooseOpenFile(const FileDialogSetup& setup) override;
    std::optional<ChosenFile> chooseSaveFile(const FileDialogSetup& setup) override;
    void openDocument(const std::string& path) override;
    void showModal(Settings& dialog) override;
    void showModal(AboutBox& dialog) override;
    void showModal(Face_time& dialog) override;
    void showModal(frmDisplay& dialog) override;
    void showModal(frmEthernetSetup& dialog) override;
    void showModal(ProgramNumberDialog& dialog) override;
    void showModal(ProgressWindow& window) override;
    void showModal(FailedBox& box) override;
    std::string showPopup(const std::string& menu) override;
    // The window that owns the popup menus shows them.
    void setPopupHandler(std::function<std::string(const std::string&)> handler) {
        m_popup = std::move(handler);
    }
    void setBusy(bool busy) override;

  private:
    std::optional<ChosenFile> chooseFile(const FileDialogSetup& setup, bool save);
    QPointer<QWidget> m_parent;
    std::function<std::string(const std::string&)> m_popup;
};

}  // namespace halvane::app
