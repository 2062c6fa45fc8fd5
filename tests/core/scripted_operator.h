#pragma once
// An operator for tests: answers from a script and records every message and question word for word.

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <typeindex>
#include <vector>

#include "authoring/about_box.h"
#include "authoring/face_time.h"
#include "authoring/operator.h"
#include "authoring/program_setup.h"
#include "authoring/window_position.h"
#include "console/main_window.h"
#include "console/setup_dialog.h"
#include "links/ethernet_setup.h"
#include "links/port_search.h"
#include "links/radio_setup.h"
#include "links/sending_radio.h"
#include "links/transmitter_windows.h"
#include "range/range_display.h"
#include "scores/hit_scores.h"
#include "scores/score_print.h"
#include "scores/target_setup.h"
#include "scores/target_transfer.h"

namespace halvane::testing {

class ScriptedOperator : public Operator {
  public:
    std::vector<std::string> log;  // "tell: title: text", "ask: title: text", "save dialog: filter #index"
    std::deque<Answer> answers;
    std::deque<std::optional<ChosenFile>> files;
    std::deque<std::optional<std::string>> inputs;
    std::vector<std::string> opened;
    halvane::Window* lastShown = nullptr;  // a modeless window stays reachable through it

    void tell(const std::string& text, const std::string& title) override {
        log.push_back("tell: " + title + ": " + text);
    }
    Answer ask(const std::string& text, const std::string& title, Buttons) override {
        log.push_back("ask: " + title + ": " + text);
        return next(answers, "unexpected question: " + text);
    }
    // Logged as "input: title: prompt [default]"; nothing in `inputs` stands for Cancel.
    std::optional<std::string> inputBox(const std::string& prompt, const std::string& title,
                                        const std::string& defaultText) override {
        log.push_back("input: " + title + ": " + prompt + " [" + defaultText + "]");
        return next(inputs, "unexpected input box: " + prompt);
    }
    std::optional<ChosenFile> chooseOpenFile(const FileDialogSetup& setup) override {
        return choose("open dialog: ", setup);
    }
    std::optional<ChosenFile> chooseSaveFile(const FileDialogSetup& setup) override {
        return choose("save dialog: ", setup);
    }
    void openDocument(const std::string& path) override { opened.push_back(path); }
    // A window is answered by its type: the next script of that type runs on it, and the log names it.
    void show(halvane::Window& window, Modality modality) override {
        lastShown = &window;
        const auto known = m_windows.find(typeid(window));
        if (known == m_windows.end())
            throw std::logic_error(std::string("unknown window ") + typeid(window).name());
        const std::string what = known->second.describe(window);
        log.push_back((modality == Modality::Modal ? "show: " : "show modeless: ") + what);
        if (known->second.scripted) next(known->second.script, "unexpected dialog " + what)(window);
    }
    std::string showPopup(const std::string& menu, const std::vector<PopupItem>& items) override {
        log.push_back("popup: " + menu);
        popupItems = items;
        return popupChoices.empty() ? "" : next(popupChoices, "");
    }

    // What the operator does in the next window of type Dialog before it closes.
    template <class Dialog>
    void script(std::function<void(Dialog&)> step) {
        m_windows.at(typeid(Dialog)).script.push_back([step = std::move(step)](halvane::Window& w) {
            step(static_cast<Dialog&>(w));
        });
    }
    std::deque<std::string> popupChoices;  // "" closes the popup with no choice
    std::vector<PopupItem> popupItems;     // those of the last popup

    // A script for the Program Setup dialog.
    static std::function<void(Settings&)> typeAndOk(std::string length) {
        return [length](Settings& d) {
            d.Text1 = length;
            d.OKButton();
        };
    }

    ScriptedOperator() {
        knows<Settings>([](Settings& d) { return std::string(Settings::Caption) + " " + d.Text1; });
        knows<AboutBox>([](AboutBox& d) { return d.Caption + " " + d.lblVersion; }, false);
        knows<Face_time>([](Face_time&) { return std::string(Face_time::Caption); });
        knows<frmDisplay>([](frmDisplay&) { return std::string(frmDisplay::Caption); });
        knows<ProgramNumberDialog>([](ProgramNumberDialog& d) { return d.Caption + " " + d.Text1; });
        knows<ProgressWindow>([](ProgressWindow& w) { return w.Caption; });
        knows<FailedBox>([](FailedBox&) { return std::string(FailedBox::Caption); }, false);
        knows<frmEthernetSetup>([](frmEthernetSetup&) { return std::string(frmEthernetSetup::Caption); });
        knows<RangeDisplay>([](RangeDisplay&) { return std::string(RangeDisplay::Caption); });
        knows<frmSerialTarget>(
            [](frmSerialTarget& d) { return "LM Setup entry " + d.txtSerialNum + "/" + d.txtTargetNum; });
        knows<frmRetrieving>([](frmRetrieving&) { return std::string(frmRetrieving::Caption); });
        knows<frmLM_Send>([](frmLM_Send&) { return std::string(frmLM_Send::Caption); });
        knows<frmHitScore_Option>(
            [](frmHitScore_Option&) { return std::string(frmHitScore_Option::Caption); });
        knows<FrmHitScores>([](FrmHitScores&) { return std::string(FrmHitScores::Caption); }, false);
        knows<frmCommPorts>([](frmCommPorts&) { return std::string(frmCommPorts::Caption); });
        knows<frmRadioSetup>([](frmRadioSetup&) { return std::string(frmRadioSetup::Caption); }, false);
        knows<frmSendingRadio>(
            [](frmSendingRadio& w) { return std::string(w.Caption) + " " + w.lblSend_Receive; });
        knows<frmPrint>([](frmPrint& d) { return std::string(frmPrint::Caption) + " " + d.Option1.Caption; });
    }

  private:
    // How a type of window is named in the log, and whether each show of it needs a script (the
    // windows with only an OK button close by themselves).
    struct Answering {
        std::function<std::string(halvane::Window&)> describe;
        bool scripted = true;
        std::deque<std::function<void(halvane::Window&)>> script;
    };
    template <class Dialog, class Describe>
    void knows(Describe describe, bool scripted = true) {
        m_windows[typeid(Dialog)] = {
            [describe](halvane::Window& w) { return describe(static_cast<Dialog&>(w)); }, scripted, {}};
    }
    std::map<std::type_index, Answering> m_windows;

    // The next scripted reply; running out of them is a fault of the test.
    template <class T>
    static T next(std::deque<T>& script, const std::string& unexpected) {
        if (script.empty()) throw std::logic_error(unexpected);
        T reply = std::move(script.front());
        script.pop_front();
        return reply;
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
struct Console {
    SharedState state;
    ScriptedOperator op;
    MemoryPositionStore positions;
    Form1 form{state, op, positions};

    // Loads the window and makes a new Program of `seconds` over `targets` targets; the log starts empty.
    void newProgram(int targets, const std::string& seconds) {
        state.NumTargets = static_cast<std::int16_t>(targets);
        form.Load();
        op.script<Settings>(ScriptedOperator::typeAndOk(seconds));
        form.M_New();
        op.log.clear();
    }
    ProgramGrid& grid() { return *form.grid(); }
};

}  // namespace halvane::testing
