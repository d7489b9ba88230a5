#include "platform/mail/mail_program.h"

#include <glib.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <vector>

#include "base/text.h"
#include "platform/desktop/child_process.h"
#include "platform/disk/native_calls.h"
#include "platform/mail/email_portal.h"
#include "platform/mail/mail_words.h"
#include "platform/mail/outbox.h"
#include "platform/mail/work_file.h"

namespace skv {

namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

Outcome failed(const std::string& text) { return Outcome::withText(err::mail, text); }

Outcome leftAlone() {
  return failed("The mail program was not waited for. It may come up with the mail yet.");
}

std::string utf8(const std::string& text) {
  return isUtf8(text) ? text : CodePage(1252).decode(text);
}

Result<ComposedMail> composed(const OutgoingMessage& mail, const std::string& outbox) {
  ComposedMail plain{{}, utf8(mail.subject()), utf8(mail.body()), {}};
  for (const auto& recipient : mail.recipients()) plain.addresses.push_back(recipient.address);
  tidyOutbox(outbox);
  for (const AttachedFile& attached : mail.attachments()) {
    auto path = standingFile(attached, outbox);
    if (!path.ok()) return path.outcome();
    plain.attachments.push_back(std::move(path).value());
  }
  return plain;
}

enum class Waited { ended, runsOn, stopped };

Waited waitFor(Helper& helper, milliseconds time, MailPulse& pulse) {
  const auto deadline = Clock::now() + time;
  while (!helper.status(MailPulse::interval)) {
    if (!pulse.beat()) return Waited::stopped;
    if (Clock::now() >= deadline) return Waited::runsOn;
  }
  return Waited::ended;
}

// None: there is no mail program to be reached in this way.
std::optional<Outcome> startProgram(std::vector<std::string> command, milliseconds time,
                                    MailPulse& pulse) {
  const std::string name = command[0];
  Helper helper(std::move(command));
  switch (waitFor(helper, time, pulse)) {
    case Waited::stopped:
      // Ending the helper might end the mail program with other mails in it.
      return leftAlone();
    case Waited::runsOn:
      return Outcome();
    case Waited::ended:
      break;
  }
  // The numbers of xdg-email: a tool is missing, the tool failed. 127: it cannot be run itself.
  constexpr int toolMissing = 3, toolFailed = 4, notThere = 127;
  switch (const int status = *helper.status({})) {
    case 0:
      return Outcome();
    case toolMissing:
    case toolFailed:
    case notThere:
      return std::nullopt;
    default:
      return failed("The mail program did not take the mail (" + name + ", exit status " +
                    std::to_string(status) + ").");
  }
}

std::string escaped(const std::string& text) {
  char* made = g_uri_escape_string(text.c_str(), "@", FALSE);
  std::string escapes(made);
  g_free(made);
  return escapes;
}

// Sylpheed, where it is the desktop's mail program: it leaves the attachment of a "mailto:"
// address, which is how portal and xdg-email would call it, out without a word. It takes one by an
// option.
std::optional<Outcome> bySylpheed(const ComposedMail& mail, milliseconds time, MailPulse& pulse) {
  constexpr milliseconds soon{2000};
  if (findProgram("sylpheed").empty() ||
      firstLineOf({"xdg-mime", "query", "default", "x-scheme-handler/mailto"}, soon) !=
          "sylpheed.desktop")
    return std::nullopt;
  std::string to;
  for (const std::string& address : mail.addresses)
    to += (to.empty() ? "" : ",") + escaped(address);
  std::vector<std::string> command{
      "sylpheed", "--compose",
      "mailto:" + to + "?subject=" + escaped(mail.subject) + "&body=" + escaped(mail.body),
      "--attach"};
  command.insert(command.end(), mail.attachments.begin(), mail.attachments.end());
  // It is the program itself that runs on, and its window is there by then.
  return startProgram(std::move(command), std::min(time, soon), pulse);
}

std::optional<Outcome> byXdgEmail(const ComposedMail& mail, milliseconds time, MailPulse& pulse) {
  std::vector<std::string> command{"xdg-email", "--utf8"};
  const auto add = [&command](const char* option, const std::string& value) {
    if (value.empty()) return;  // the program takes no empty ones
    command.emplace_back(option);
    command.push_back(value);
  };
  add("--subject", mail.subject);
  add("--body", mail.body);
  for (const std::string& path : mail.attachments) add("--attach", path);
  for (const std::string& address : mail.addresses) command.push_back(address);
  return startProgram(std::move(command), time, pulse);
}

std::string sendmailProgram() {
  for (const char* name : {"sendmail", "/usr/sbin/sendmail", "/usr/lib/sendmail"})
    if (std::string program = findProgram(name); !program.empty()) return program;
  return {};
}

// Writes the whole mail, with the line ends of this machine.
Outcome writeMail(const OutgoingMessage& mail, int into, MailPulse& pulse) {
  const auto source = mail.encoded();
  if (!source.ok()) return source.outcome();
  std::vector<char> buffer(std::size_t{1} << 18U);
  std::uint64_t done = 0;
  for (;;) {
    buffer.resize(buffer.capacity());
    const auto got = source.value().read(buffer);
    if (!got.ok()) return got.outcome();
    if (got.value() == 0) break;
    buffer.resize(got.value());
    std::erase(buffer, '\r');
    if (const int error = writeAll(into, buffer)) return systemFailure(error, "the mail under way");
    pulse.tell(done += got.value(), source.value().size);
    if (!pulse.beat()) return MailPulse::cancelled();
  }
  if (::lseek(into, 0, SEEK_SET) != 0) return systemFailure(errno, "the mail under way");
  return {};
}

// What sendmail complained about, on one line.
std::string complaint(const Descriptor& file) {
  constexpr std::size_t longest = 300;
  std::array<char, longest> buffer;
  const ssize_t got = retried([&] { return ::pread(file.get(), buffer.data(), buffer.size(), 0); });
  if (got <= 0) return ".";
  return ": " + trim(onOneLine(utf8(std::string(buffer.data(), static_cast<std::size_t>(got)))));
}

// The mail lies whole in a file before the program is started: none ever sends half of one.
Outcome bySendmail(const OutgoingMessage& mail, const std::string& program,
                   const std::string& workFolder, milliseconds time, MailPulse& pulse) {
  const auto envelope = mail.envelope();
  if (!envelope.ok()) return envelope.outcome();
  std::vector<std::string> command{program, "-i", "-f" + envelope.value().from, "--"};
  for (const std::string& address : envelope.value().to) {
    // Not every sendmail knows "--".
    if (address.starts_with('-'))
      return failed("The machine's sendmail cannot send to this EMail address: " + address);
    command.push_back(address);
  }
  const auto input = makeWorkFile(workFolder);
  if (!input.ok()) return input.outcome();
  const auto errors = makeWorkFile(workFolder);
  if (!errors.ok()) return errors.outcome();
  if (Outcome written = writeMail(mail, input.value().get(), pulse); !written.ok()) return written;

  Helper helper(std::move(command), input.value().get(), errors.value().get());
  const Waited waited = waitFor(helper, time, pulse);
  if (waited != Waited::ended) helper.end();
  if (waited == Waited::stopped) return MailPulse::cancelled();
  if (waited == Waited::runsOn)
    return failed(
        "The machine's sendmail did not end in time. It is not known whether it has sent "
        "the mail.");
  if (const int status = *helper.status({}); status != 0)
    return failed("The machine's sendmail did not take the mail (exit status " +
                  std::to_string(status) + ")" + complaint(errors.value()));
  return {};
}

}  // namespace

Outcome handToMailProgram(const OutgoingMessage& mail, const std::string& workFolder,
                          MailPulse& pulse, HandOverTimes times) {
  if (const auto complete = mail.envelope(); !complete.ok()) return complete.outcome();
  const auto plain = composed(mail, workFolder + "/outbox");
  if (!plain.ok()) return plain.outcome();
  if (const auto handed = bySylpheed(plain.value(), times.toStart, pulse)) return *handed;
  switch (composeByPortal(plain.value(), pulse)) {
    case PortalAnswer::taken:
      return {};
    case PortalAnswer::declined:
      return failed("No mail program was chosen for the mail.");
    case PortalAnswer::unknown:
      return leftAlone();
    case PortalAnswer::stopped:
      return MailPulse::cancelled();
    case PortalAnswer::none:
      break;
  }
  if (!findProgram("xdg-email").empty())
    if (const auto handed = byXdgEmail(plain.value(), times.toStart, pulse)) return *handed;
  if (const std::string program = sendmailProgram(); !program.empty())
    return bySendmail(mail, program, workFolder, times.toSend, pulse);
  return failed(
      "There is no mail program on this desktop that takes a mail, and no sendmail on this "
      "computer.");
}

}  // namespace skv
