// What sending and both installers have in common: an engine under which the window lives, hosts
// that offer no encryption, and how the end of a transfer is told.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "core/app.h"

namespace skv {

// An engine that lets the window live, shows its progress on `line` and ends in order when the user
// wants the operation to end. nullptr, and told, when the program has no part for mails.
std::unique_ptr<MailEngine> makeMailEngine(App& app, ui::StatusLine& line);

// Whether the running operation may go on.
inline bool goesOn(const App& app) { return !app.stopRequested && !app.ending; }

// Lets an engine know that the user has once allowed this host of the settings to be used
// unencrypted.
void recallPlainHost(App& app, MailEngine& engine, const std::string& host);
// Asks whether the host may be used without encryption. A Yes is remembered.
bool mayUsePlain(App& app, MailEngine& engine, const std::string& host);

inline const Outcome& outcomeOf(const Outcome& outcome) { return outcome; }
template <class T>
const Outcome& outcomeOf(const Result<T>& result) {
  return result.outcome();
}

// A call that contacts the host; once more when the user lets it go unencrypted.
template <class Call>
auto contact(App& app, MailEngine& engine, const std::string& host, Call call) {
  auto result = call();
  if (outcomeOf(result).number() == err::mailNotEncrypted && mayUsePlain(app, engine, host))
    return call();
  return result;
}

// The checkpoint: shows a failure and answers true. One that the user has decided on himself, by
// ending the transfer or by his answer to the question above, is not shown.
bool ReportMailError(App& app, const Outcome& outcome);

// A failure that an empty setting most likely explains says so.
Outcome explained(Outcome outcome, const std::string& value, const char* label);

}  // namespace skv
