// What a call to the outside world answers: success, or an error number with a description.
//
// No exception crosses an operation. An implementation turns whatever its library throws or returns
// into an Outcome at its border.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace skv {

// The classic run-time error numbers that Windows desktop programs show in their error boxes.
namespace err {
inline constexpr int invalidProcedureCall = 5;
inline constexpr int badFileName = 52;
inline constexpr int fileNotFound = 53;
inline constexpr int deviceIo = 57;
inline constexpr int fileExists = 58;
inline constexpr int diskFull = 61;
inline constexpr int tooManyFiles = 67;
inline constexpr int deviceUnavailable = 68;
inline constexpr int permissionDenied = 70;
inline constexpr int pathFileAccess = 75;
inline constexpr int pathNotFound = 76;
inline constexpr int invalidClipboardFormat = 460;
inline constexpr int invalidPicture = 481;
// The numbers of the closed components that the program once called.
inline constexpr int cancelled = 32755;  // a file dialog that the user left by Cancel
inline constexpr int zip = 31000;        // an archive that cannot be read or written
inline constexpr int web = 31200;        // a text of the web
inline constexpr int mail = 31100;       // a mail, a mailbox or a mail server
// A mail server elsewhere offers no encryption, and nothing that matters has gone to it.
inline constexpr int mailNotEncrypted = 31101;
inline constexpr int mailLost = 31102;  // one mail that cannot be had, as others may
}  // namespace err

// The text that goes with one of the numbers above, as in "Path not found".
std::string_view errorText(int number);

class [[nodiscard]] Outcome {
 public:
  Outcome() = default;
  // A failure with the number's own text, followed by `detail` (a path, a reason) when there is
  // one.
  static Outcome failure(int number, std::string_view detail = {});
  // A failure in the caller's own words.
  static Outcome withText(int number, std::string description);

  bool ok() const { return number_ == 0; }
  int number() const { return number_; }
  const std::string& description() const { return description_; }

  // States at the call that a failure is passed over on purpose.
  void skipped() const {}

 private:
  int number_ = 0;
  std::string description_;
};

// A value, or the outcome that says why there is none.
template <class T>
class [[nodiscard]] Result {
 public:
  Result(T value) : value_(std::move(value)) {}              // NOLINT(google-explicit-constructor)
  Result(Outcome failure) : outcome_(std::move(failure)) {}  // NOLINT(google-explicit-constructor)

  bool ok() const { return value_.has_value(); }
  const Outcome& outcome() const { return outcome_; }
  // Only when ok().
  const T& value() const& { return *value_; }
  T& value() & { return *value_; }
  T&& value() && { return *std::move(value_); }
  T valueOr(T fallback) const { return value_ ? *value_ : std::move(fallback); }

 private:
  std::optional<T> value_;
  Outcome outcome_;
};

}  // namespace skv
