#pragma once
// The operator reached through Qt: message boxes, file dialogs, the desktop, and the modal dialogs.

#include <QPointer>
#include <QWidget>
#include <functional>
#include <unordered_map>

#include "authoring/operator.h"
#include "platform/window_registry.h"

namespace halvane::app {

// Owns the views it shows: a modal view lives for its exec(), a modeless one until the operator closes
// it or its model goes, whichever comes first.
class QtOperator : public Operator {
  public:
    // With the views of all the console's windows registered.
    QtOperator();
    ~QtOperator() override;
    QtOperator(const QtOperator&) = delete;
    QtOperator& operator=(const QtOperator&) = delete;

    // Dialogs are centred on this window once it exists.
    void setParentWindow(QWidget* parent) { m_parent = parent; }

    void tell(const std::string& text, const std::string& title) override;
    void critical(const std::string& text, const std::string& title) override;
    Answer ask(const std::string& text, const std::string& title, Buttons buttons) override;
    std::optional<std::string> inputBox(const std::string& prompt, const std::string& title,
                                        const std::string& defaultText) override;
    std::optional<ChosenFile> chooseOpenFile(const FileDialogSetup& setup) override;
    std::optional<ChosenFile> chooseSaveFile(const FileDialogSetup& setup) override;
    void openDocument(const std::string& path) override;
    // A model shown modeless again brings its view to the front rather than opening a second one.
    void show(Window& window, Modality modality = Modality::Modal) override;
    WindowRegistry& registry() { return m_registry; }
    // The modeless view showing `window`, if one is up.
    QWidget* viewOf(const Window& window) const;
    std::string showPopup(const std::string& menu, const std::vector<PopupItem>& items) override;
    // Runs before a popup opens, so that the windows show what the popup acts on.
    void setBeforePopup(std::function<void()> before) { m_beforePopup = std::move(before); }
    void setBusy(bool busy) override;

  private:
    std::optional<ChosenFile> chooseFile(const FileDialogSetup& setup, bool save);
    void showModeless(Window& window);
    WindowRegistry m_registry;
    std::unordered_map<const Window*, QPointer<QWidget>> m_modeless;
    QPointer<QWidget> m_parent;
    std::function<void()> m_beforePopup;
};

}  // namespace halvane::app
