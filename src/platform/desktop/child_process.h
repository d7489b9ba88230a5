// Programs that this one starts, and that are nobody's children: they outlive it, and nobody has to
// collect them. No shell reads their words.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "platform/disk/os_error.h"

namespace skv {

// Full native path of a program on the search path; "" when there is none.
std::string findProgram(const std::string& name);

// Answers whether it runs.
bool startDetached(std::vector<std::string> command);

// A program whose end is to be heard of, while the caller does other things between. It runs on
// when this goes.
class Helper {
 public:
  // `input`: a descriptor that it reads, `errors`: one for what it complains about; -1: nothing
  // and what this program has.
  explicit Helper(std::vector<std::string> command, int input = -1, int errors = -1);
  // Its exit status when it ends within the time, 127 when it could not be run, none when it runs
  // on.
  std::optional<int> status(std::chrono::milliseconds time);
  // Ends it if it still runs, with all that it has started.
  void end();

 private:
  Descriptor report_;
  int group_ = -1;
  std::optional<int> status_;
};

// The same for a helper that is soon over.
std::optional<int> startHelper(std::vector<std::string> command, std::chrono::milliseconds time);

// What a program prints, up to its first line end; "" when it cannot be started. One that has not
// ended within the time is ended.
std::string firstLineOf(std::vector<std::string> command, std::chrono::milliseconds time);

}  // namespace skv
