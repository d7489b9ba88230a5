// The clipboard and the screen as a test sets them.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/pictures.h"

namespace skv::test {

class ScriptedClipboard : public Clipboard {
 public:
  Result<Pixels> picture() override {
    if (held) return *held;
    return Outcome::failure(err::invalidClipboardFormat);
  }
  Outcome putPicture(const Pixels& picture) override {
    held = picture;
    return {};
  }
  std::optional<Pixels> held;
};

class ScriptedScreen : public Screen {
 public:
  Outcome activate(std::string_view title, bool) override {
    activated.emplace_back(title);
    return window ? Outcome() : Outcome::failure(err::invalidProcedureCall);
  }
  Result<Pixels> captureActiveWindow() override {
    if (window) return *window;
    return Outcome::failure(err::invalidProcedureCall);
  }
  std::optional<Pixels> window;  // of the simulator; none: it does not run
  std::vector<std::string> activated;
};

}  // namespace skv::test
