#pragma once
// An operator for tests: answers from a script and records every message and question word for word.

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "authoring/about_box.h"
#include "authoring/face_time.h"
#include "console/main_window.h"
#include "authoring/operator.h"
#include "authoring/program_setup.h"
#include "console/setup_dialog.h"
#include "authoring/window_position.h"
#include "links/ethernet_setup.h"
#include "links/transmitter_windows.h"

namespace halvane::testing {

class ScriptedOperator : public Operator {
  public:
    std::vector<std::string> log;  // "tell: title: text", "ask: title: text", "save dialog: filter #index"
    std::deque<Answer> answers;
    std::deque<std::optional<ChosenFile>> files;
    std::deque<std::function<void(Settings&)>> settingsScript;
    std::vector<std::string> opened;

    void tell(const std::string& text, const std::string& title) override {
        log.push_back("tell: " + title + ": " + text);
    }
    Answer ask(const std::string& text, const std::string& title, Buttons) override {
        log.push_back("ask: " + title + ": " + text);
        return next(answers, "unexpected question: " + text);
    }
    std::optional<ChosenFile> chooseOpenFile(const FileDialogSetup& setup) override {
        return choose("open dialog: ", setup);
    }
    std::optional<ChosenFile> chooseSaveFile(const FileDialogSetup& setup) override {
        return choose("save dialog: ", setup);
    }
    void openDocument(const std::string& path) override { opened.push_back(path); }
    void showModal(Settings& dialog) override {
        play(settingsScript, dialog, std::string(Settings::Caption) + " " + dialog.Text1);
    }
    void showModal(AboutBox& d) override { log.push_back("show: " + d.Caption + " " + d.lblVersion); }
    void showModal(Face_time& dialog) override { play(faceTimeScript, dialog, Face_time::Caption); }
    void showModal(frmDisplay& dialog) override { play(setupScript, dialog, frmDisplay::Caption); }
    void showModal(ProgramNumberDialog& d) override { play(numberScript, d, d.Caption + " " + d.Text1); }
    void showModal(ProgressWindow& window) override { play(progressScript, window, window.Caption); }
    void showModal(FailedBox&) override { log.push_back(std::string("show: ") + FailedBox::Caption); }
    void showModal(frmEthernetSetup& d) override { play(ethernetScript, d, frmEthernetSetup::Caption); }
    std::string showPopup(const std::string& menu) override {
        log.push_back("popup: " + menu);
        return popupChoices.empty() ? "" : next(popupChoices, "");
    }

    template <class Dialog>
    using Script = std::function<void(Dialog&)>;
    std::deque<Script<Face_time>> faceTimeScript;
    std::deque<Script<frmDisplay>> setupScript;
    std::deque<Script<frmEthernetSetup>> ethernetScript;
    std::deque<Script<ProgramNumberDialog>> numberScript;
    std::deque<Script<ProgressWindow>> progressScript;
    std::deque<std::string> popupChoices;  // "" closes the popup with no choice

    // A script for the Program Setup dialog.
    static std::function<void(Settings&)> typeAndOk(std::string length) {
        return [length](Settings& d) {
            d.Text1 = length;
            d.OKButton();
        };
    }

  private:
    // The next scripted reply; running out of them is a fault of the test.
    template <class T>
    static T next(std::deque<T>& script, const std::string& unexpected) {
        if (script.empty()) throw std::logic_error(unexpected);
        T reply = std::move(script.front());
        script.pop_front();
        return reply;
    }
    template <class Dialog>
    void play(std::deque<Script<Dialog>>& script, Dialog& dialog, const std::string& what) {
        log.push_back("show: " + what);
        next(script, "unexpected dialog " + what)(dialog);
    }
    std::optional<ChosenFile> choose(const std::string& what, const FileDialogSetup& setup) {
        log.push_back(what + setup.filter + " #" + std::to_string(setup.filterIndex));
        return next(files, "unexpected file dialog");
    }
};

// A position store in memory.
class MemoryPositionStore : public PositionStore {
  public:
    struct Entry {
        std::string app, section, key, value;
    };
    std::vector<Entry> entries;

    std::vector<std::pair<std::string, std::string>> GetAllSettings(const std::string& app,
                                                                    const std::string& section) override {
        std::vector<std::pair<std::string, std::string>> out;
        for (const auto& e : entries)
            if (e.app == app && e.section == section) out.emplace_back(e.key, e.value);
        return out;
    }
    void SaveSetting(const std::string& app, const std::string& section, const std::string& key,
                     const std::string& value) override {
        for (auto& e : entries)
            if (e.app == app && e.section == section && e.key == key) {
                e.value = value;
                return;
            }
        entries.push_back({app, section, key, value});
    }
};

// A main window over its own state, answered by a scripted operator.
struct Window {
    SharedState state;
    ScriptedOperator op;
    MemoryPositionStore positions;
    Form1 form{state, op, positions};

    // Loads the window and makes a new Program of `seconds` over `targets` targets; the log starts empty.
    void newProgram(int targets, const std::string& seconds) {
        state.NumTargets = static_cast<std::int16_t>(targets);
        form.Load();
        op.settingsScript.push_back(ScriptedOperator::typeAndOk(seconds));
        form.M_New();
        op.log.clear();
    }
    ProgramGrid& grid() { return *form.grid(); }
};

}  // namespace halvane::testing
