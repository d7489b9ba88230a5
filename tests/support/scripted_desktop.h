// The clipboard, the screen, the web and the simulators of a computer as a test sets them.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/pictures.h"
#include "platform/secrets.h"
#include "platform/simulator_finder.h"
#include "platform/web.h"

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

class MemorySecrets : public Secrets {
 public:
  Result<std::string> read(std::string_view name) override {
    if (!runs) return Outcome::failure(err::deviceUnavailable);
    const auto found = kept.find(name);
    return found == kept.end() ? std::string() : found->second;
  }
  Outcome write(std::string_view name, std::string_view password) override {
    if (!runs) return Outcome::failure(err::deviceUnavailable);
    if (refuses) return Outcome::failure(err::permissionDenied);
    kept[std::string(name)] = password;
    return {};
  }
  bool runs = true, refuses = false;
  std::map<std::string, std::string, std::less<>> kept;
};

class ScriptedWeb : public Web {
 public:
  Result<std::string> fetch(std::string_view url, const std::function<bool()>&) override {
    fetched.emplace_back(url);
    if (failure.ok()) return body;
    return failure;
  }
  std::string body;
  Outcome failure;
  std::vector<std::string> fetched;
};

class ScriptedSimulators : public SimulatorFinder {
 public:
  std::vector<std::string> find() const override { return found; }
  std::vector<std::string> found;
};

}  // namespace skv::test
