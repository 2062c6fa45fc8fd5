#pragma once
// The operator of the command line: messages go to stderr, questions are answered from the options.

#include <functional>
#include <iosfwd>

#include "authoring/operator.h"

namespace halvane::cli {

class ConsoleOperator : public Operator {
  public:
    ConsoleOperator(std::ostream& err, Answer answerToQuestions) : m_err(err), m_answer(answerToQuestions) {}

    void tell(const std::string& text, const std::string& title) override;
    Answer ask(const std::string& text, const std::string& title, Buttons buttons) override;
    // Nobody types on the command line: every input box is cancelled.
    std::optional<std::string> inputBox(const std::string&, const std::string&, const std::string&) override {
        return std::nullopt;
    }
    std::optional<ChosenFile> chooseOpenFile(const FileDialogSetup&) override { return std::nullopt; }
    std::optional<ChosenFile> chooseSaveFile(const FileDialogSetup&) override { return std::nullopt; }
    void openDocument(const std::string&) override {}
    // A command that shows windows of its own takes them here first: `handler` answers or runs the
    // window to its end and says whether it took it.
    void onShow(std::function<bool(Window&)> handler) { m_onShow = std::move(handler); }
    // Of the rest, only the failure window has words for the command line.
    void show(Window& window, Modality modality) override;
    std::string showPopup(const std::string&, const std::vector<PopupItem>&) override { return {}; }

  private:
    std::ostream& m_err;
    Answer m_answer;
    std::function<bool(Window&)> m_onShow;
};

}  // namespace halvane::cli
