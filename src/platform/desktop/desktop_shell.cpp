#include "platform/desktop/desktop_shell.h"

#include <chrono>

#include "platform/desktop/child_process.h"
#include "platform/desktop/desktop_entry.h"

namespace skv {

namespace {

// Results of the classic shell call.
constexpr int shellStarted = 33;
constexpr int shellFileNotFound = 2;
constexpr int shellPathNotFound = 3;
constexpr int shellNoAssociation = 31;

// "http://...", "mailto:...": a scheme, which is longer than the letter of a drive.
bool isAddress(std::string_view target) {
  const auto colon = target.find(':');
  return colon != std::string_view::npos && colon > 1 &&
         target.substr(0, colon).find_first_not_of(
             "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789+.-") ==
             std::string_view::npos;
}

// The entry of the menu that opens documents of a media type, "" when none does.
std::string programFor(std::string_view mediaType) {
  constexpr std::chrono::milliseconds time{3000};
  return firstLineOf({"xdg-mime", "query", "default", std::string(mediaType)}, time);
}

}  // namespace

int DesktopShell::open(std::string_view target) {
  std::string opened(target);
  if (!isAddress(target)) {
    const auto found = files_.attributes(target);
    if (!found.ok())
      return found.outcome().number() == err::pathNotFound ? shellPathNotFound : shellFileNotFound;
    const auto native = files_.nativePath(target);
    if (!native.ok()) return shellFileNotFound;
    opened = native.value();
  }
  // The opener tells by its end whether it found a program. One that still runs is that program.
  constexpr std::chrono::milliseconds time{1500};
  switch (startHelper({"xdg-open", opened}, time).value_or(0)) {
    case 0:
      return shellStarted;
    case 2:
      return shellFileNotFound;
    default:
      return shellNoAssociation;
  }
}

bool DesktopShell::hasProgramFor(std::string_view mediaType) {
  return !programFor(mediaType).empty();
}

Outcome DesktopShell::editText(std::string_view path) {
  const auto native = files_.nativePath(path);
  if (!native.ok()) return native.outcome();
  if (const std::string name = programFor("text/plain"); !name.empty()) {
    const DesktopEntry entry = findDesktopEntry(name);
    if (!entry.Terminal && startDetached(commandFor(entry, native.value()))) return {};
  }
  for (const char* editor : {"gnome-text-editor", "gedit", "kate", "kwrite", "xed", "mousepad",
                             "pluma", "featherpad", "leafpad", "l3afpad", "geany", "xedit"})
    if (startDetached({editor, native.value()})) return {};
  return Outcome::withText(err::fileNotFound,
                           "There is no text editor on this desktop for plain text files.");
}

}  // namespace skv
