#include "mail/mail_contact.h"

#include "base/text.h"
#include "core/messages.h"
#include "core/settings_keys.h"

namespace skv {

namespace {

constexpr const char* allowed = "1";

// "pop.example.com:995", "[::1]:110": without the port, which has no say in this.
std::string hostOf(const std::string& text) {
  const std::string host = lowerAscii(trim(text));
  if (host.starts_with('[')) return host.substr(0, host.find(']') + 1);
  const auto colon = host.find(':');
  return host.find(':', colon + 1) == std::string::npos ? host.substr(0, colon) : host;
}

std::string plainKey(const std::string& host) { return "Plain " + hostOf(host); }

}  // namespace

std::unique_ptr<MailEngine> makeMailEngine(App& app, ui::StatusLine& line) {
  auto engine = app.platform.mail.load(app.files());
  if (!engine) {
    app.windows.messageBox(
        {"The part of FS Skyvault for mails, skyvault-net.so, is missing. "
         "Install the program anew.",
         ui::BoxIcon::exclamation});
    return nullptr;
  }
  engine->Progress = [&line](int percent) { line.setProgress(percent); };
  engine->Yield = [&app] {
    app.windows.yield();
    return goesOn(app);
  };
  return engine;
}

void recallPlainHost(App& app, MailEngine& engine, const std::string& host) {
  if (app.platform.settings.read(setting::mail, plainKey(host), "") == allowed)
    engine.AllowPlain(host);
}

bool mayUsePlain(App& app, MailEngine& engine, const std::string& host) {
  const std::string name = hostOf(host);
  if (app.windows.messageBox(
          {"The mail server \"" + name +
               "\" offers no encryption. Whoever is on the way to it can read your password and "
               "your mails.\r\n\r\nUse it all the same, now and from now on?",
           ui::BoxIcon::warning, ui::BoxButtons::yesNo, ui::programTitle, ui::DefaultButton::no}) !=
      ui::Answer::yes)
    return false;
  const std::string key = plainKey(host);
  const Outcome stored = app.platform.settings.write(setting::mail, key, allowed);
  if (!stored.ok()) tellFailure(app, "The answer holds for this time only:", stored);
  engine.AllowPlain(host);
  return goesOn(app);
}

bool ReportMailError(App& app, const Outcome& outcome) {
  if (outcome.ok()) return false;
  if (outcome.number() != err::cancelled && outcome.number() != err::mailNotEncrypted)
    ReportError(app, outcome);
  return true;
}

Outcome explained(Outcome outcome, const std::string& value, const char* label) {
  if (outcome.ok() || !trim(value).empty()) return outcome;
  return Outcome::withText(
      outcome.number(),
      "There is no \"" + std::string(label) + "\" yet: File, Settings (F2), EMail is the place.");
}

}  // namespace skv
