#include "base/outcome.h"

namespace skv {

std::string_view errorText(int number) {
  switch (number) {
    case err::invalidProcedureCall:
      return "Invalid procedure call or argument";
    case err::badFileName:
      return "Bad file name or number";
    case err::fileNotFound:
      return "File not found";
    case err::deviceIo:
      return "Device I/O error";
    case err::fileExists:
      return "File already exists";
    case err::diskFull:
      return "Disk full";
    case err::tooManyFiles:
      return "Too many files";
    case err::deviceUnavailable:
      return "Device unavailable";
    case err::permissionDenied:
      return "Permission denied";
    case err::pathFileAccess:
      return "Path/File access error";
    case err::pathNotFound:
      return "Path not found";
    case err::invalidClipboardFormat:
      return "Invalid Clipboard format";
    case err::invalidPicture:
      return "Invalid picture";
    case err::cancelled:
      return "Cancel was selected.";
    case err::zip:
      return "ZIP archive error";
    case err::web:
      return "The address could not be read";
    case err::mail:
      return "Mail error";
    case err::mailNotEncrypted:
      return "The mail server offers no encryption";
    default:
      return "Application-defined or object-defined error";
  }
}

Outcome Outcome::failure(int number, std::string_view detail) {
  std::string description(errorText(number));
  if (!detail.empty()) description.append(": ").append(detail);
  return withText(number, std::move(description));
}

Outcome Outcome::withText(int number, std::string description) {
  Outcome outcome;
  outcome.number_ = number;
  outcome.description_ = std::move(description);
  return outcome;
}

}  // namespace skv
