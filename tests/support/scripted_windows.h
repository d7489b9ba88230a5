// A window system without windows: a script of answers and a record of every box.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "ui/model/windowing.h"

namespace skv::test {

class ScriptedWindows : public ui::Windowing {
 public:
  // Answers to questions, in order; when they run out the answer is Cancel, or No without one.
  std::deque<ui::Answer> answers;
  // Answers outside the script, by the caption that a box has for Yes.
  std::map<std::string, ui::Answer> usual{{"Show what was left over", ui::Answer::no}};
  // What the input box gives back, nullopt for Cancel; when they run out the text it was offered.
  std::deque<std::optional<std::string>> inputs;
  // Windows paths that the file dialog gives back; none: the user cancels.
  std::deque<std::string> picks;
  // Plays the user: called by yieldUntil for a form that was shown, once for each showing. A form
  // without a script is closed by its close box.
  std::map<const ui::Form*, std::function<void()>> onShow;
  // Called at every yield; whatever a user may do while an operation runs.
  std::function<void()> onYield;

  std::vector<ui::Box> boxes;
  std::vector<std::string> inputPrompts;  // "prompt|offered text"
  std::vector<ui::FileDialog> fileDialogs;
  std::vector<ui::Pointer> pointers;
  int yields = 0;
  std::string copied;  // to the clipboard, last

  std::vector<std::string> boxTexts() const {
    std::vector<std::string> texts;
    for (const ui::Box& box : boxes) texts.push_back(box.text);
    return texts;
  }

  ui::Answer messageBox(const ui::Box& box) override {
    boxes.push_back(box);
    if (box.buttons == ui::BoxButtons::ok) return ui::Answer::ok;
    if (const auto answer = usual.find(box.yes); answer != usual.end()) return answer->second;
    if (answers.empty())
      return box.buttons == ui::BoxButtons::yesNo ? ui::Answer::no : ui::Answer::cancel;
    const ui::Answer answer = answers.front();
    answers.pop_front();
    return answer;
  }

  std::optional<std::string> inputBox(const std::string& prompt, const std::string&,
                                      const std::string& text) override {
    inputPrompts.push_back(prompt + "|" + text);
    if (inputs.empty()) return text;
    auto input = inputs.front();
    inputs.pop_front();
    return input;
  }

  Result<ui::PickedFile> openFile(const ui::FileDialog& dialog) override {
    fileDialogs.push_back(dialog);
    if (picks.empty()) return Outcome::failure(err::cancelled);
    ui::PickedFile picked{picks.front(), picks.front().substr(0, picks.front().rfind('\\') + 1)};
    picks.pop_front();
    return picked;
  }

  void show(ui::Form& form, ui::Form*) override {
    form.visible = true;
    waiting_.push_back(&form);
  }
  void showModal(ui::Form& form, ui::Form* owner) override {
    show(form, owner);
    yieldUntil([&form] { return !form.visible; });
  }
  void hide(ui::Form& form) override { form.visible = false; }
  void unload(ui::Form& form) override { form.visible = false; }

  void setPointer(ui::Pointer pointer) override { pointers.push_back(pointer); }
  void setFocus(ui::Control&) override {}
  int longestScreenSide() const override { return 1920; }
  void copyText(const std::string& text) override { copied = text; }
  void popUp(ui::MenuItem&) override {}

  void yield() override {
    ++yields;
    if (onYield) onYield();
  }

  void yieldUntil(const std::function<bool()>& condition) override {
    int idle = 0;
    while (!condition()) {
      yield();
      if (waiting_.empty()) {
        // A test that fails must not hang.
        if (++idle > mostIdleYields)
          throw std::runtime_error("waits for a form that nobody closes");
        continue;
      }
      ui::Form* form = waiting_.back();
      waiting_.pop_back();
      if (const auto script = onShow.find(form); script != onShow.end() && script->second)
        script->second();
      else if (form->closed)
        form->closed();
      else
        form->visible = false;
    }
  }

 private:
  static constexpr int mostIdleYields = 100000;
  std::vector<ui::Form*> waiting_;  // shown and not yet seen by a script
};

}  // namespace skv::test
