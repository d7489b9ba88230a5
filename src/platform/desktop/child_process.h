// Programs that this one starts and does not wait for.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace skv {

// Full native path of a program on the search path; "" when there is none.
std::string findProgram(const std::string& name);

// Starts a program that is nobody's child: it outlives this one, and nobody has to collect it. No
// shell reads the words. Answers whether it runs.
bool startDetached(std::vector<std::string> command);

// The same for a helper that is soon over: its exit status when it ends within the time, none when
// it runs on.
std::optional<int> startHelper(std::vector<std::string> command, std::chrono::milliseconds time);

// What a program prints, up to its first line end; "" when it cannot be started. One that has not
// ended within the time is ended.
std::string firstLineOf(std::vector<std::string> command, std::chrono::milliseconds time);

}  // namespace skv
