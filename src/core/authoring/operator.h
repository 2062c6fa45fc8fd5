#pragma once
// How the console reaches the person at the keyboard: messages, questions, file dialogs, dialogs.

#include <optional>
#include <string>
#include <vector>

#include "authoring/window.h"

namespace halvane {

enum class Answer { Ok, Yes, No, Cancel };
enum class Buttons { Ok, OkCancel, YesNo, YesNoCancel };

// A file dialog as the console sets it up. `filter` is "Description|pattern|Description|pattern";
// `filterIndex` counts from 1.
struct FileDialogSetup {
    std::string filter;
    int filterIndex = 1;
};

// One item of a popup menu; an item that is not visible is left out.
struct PopupItem {
    std::string name;     // M_Face
    std::string caption;  // "Face Time"
    bool enabled = true;
    bool visible = true;
};

// What a file dialog gives back: the full name, the name without its folder, and the filter the
// operator left selected (from 1; 0 when the dialog does not say).
struct ChosenFile {
    std::string fileName;
    std::string fileTitle;
    int filterIndex = 0;
};

class Operator {
  public:
    virtual ~Operator() = default;
    // A message box with one OK button.
    virtual void tell(const std::string& text, const std::string& title) = 0;
    // A message box with the critical icon: a device or link failed.
    virtual void critical(const std::string& text, const std::string& title) { tell(text, title); }
    virtual Answer ask(const std::string& text, const std::string& title, Buttons buttons) = 0;
    // An input box: a prompt, one line to type into, OK and Cancel. Nothing when the operator cancels.
    virtual std::optional<std::string> inputBox(const std::string& prompt, const std::string& title,
                                                const std::string& defaultText) = 0;
    // Nothing when the operator cancels the dialog.
    virtual std::optional<ChosenFile> chooseOpenFile(const FileDialogSetup& setup) = 0;
    virtual std::optional<ChosenFile> chooseSaveFile(const FileDialogSetup& setup) = 0;
    // Opens a document with the desktop's own program for it.
    virtual void openDocument(const std::string& path) = 0;
    // Shows the view of `window`; see Modality and Window for when it returns and who owns what.
    virtual void show(Window& window, Modality modality = Modality::Modal) = 0;
    // Shows the popup menu `menu` with `items` at the pointer and waits for it to close; the name of
    // the item chosen, or "" when none was.
    virtual std::string showPopup(const std::string& menu, const std::vector<PopupItem>& items) = 0;
    // Long file work is under way (the hourglass pointer); nothing to do by default.
    virtual void setBusy(bool /*busy*/) {}
};

}  // namespace halvane
