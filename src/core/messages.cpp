#include "core/messages.h"

#include <algorithm>
#include <array>
#include <utility>

namespace skv {

namespace {

// Results of the classic shell call, by the words that its callers have always shown.
constexpr std::array<std::pair<int, const char*>, 12> shellErrors{{
    {2, "File not found"},
    {3, "Path not found"},
    {5, "Access denied"},
    {8, "Out of memory"},
    {11, "Invalid EXE file or error in EXE image"},
    {26, "A sharing violation occurred"},
    {27, "Incomplete or invalid file association"},
    {28, "DDE Time out"},
    {29, "DDE transaction failed"},
    {30, "DDE busy"},
    {31, "No association for file extension"},
    {32, "DLL not found"},
}};

const char* shellErrorText(int result) {
  const auto* const found =
      std::ranges::find(shellErrors, result, &std::pair<int, const char*>::first);
  return found == shellErrors.end() ? "Unknown error" : found->second;
}

}  // namespace

bool ReportError(App& app, const Outcome& outcome) {
  if (outcome.ok()) return false;
  app.windows.messageBox(
      {"Error #" + std::to_string(outcome.number()) + "\r\n" + outcome.description(),
       ui::BoxIcon::exclamation});
  return true;
}

void tellFailure(App& app, const std::string& what, const Outcome& failure) {
  app.windows.messageBox({what + "\r\n" + failure.description(), ui::BoxIcon::exclamation});
}

std::string cannotBeStored(const std::string& lacking) {
  return "cannot be stored. The simulator's files have no \"" + lacking + "\".";
}

std::string notStorable(const std::string& text, const std::string& lacking) {
  return "\"" + text + "\" " + cannotBeStored(lacking);
}

void ShellOpen(App& app, const std::string& target) {
  constexpr int lastFailure = 32;
  const int result = app.platform.shell.open(target);
  if (result <= lastFailure) app.windows.messageBox({shellErrorText(result)});
}

}  // namespace skv
