// Mailboxes and mail programs as a test sets them up.
#pragma once

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/mail_engine.h"

namespace skv::test {

struct ScriptedAttachment {
  std::string name, content;
};

struct ScriptedMailItem {
  std::string subject, body;
  std::vector<ScriptedAttachment> attachments = {};
  std::string sender = {};
};

struct SentMail {
  std::string to, displayName;  // of several with "|" between
  std::string from, fromName, subject, body;
  std::vector<ScriptedAttachment> attachments;
};

// The mail of all engines of one test.
class ScriptedMail : public MailSystem {
 public:
  std::vector<ScriptedMailItem> mailbox;                         // on the POP3 server
  std::map<std::string, std::vector<ScriptedMailItem>> folders;  // of the mail programs
  std::vector<SentMail> sent, handedOver;  // by SendMail, by SendMailByOutlook
  std::vector<std::string> calls;       // as "SetPopHost pop.example.com", "DeleteMail <subject>"
  std::vector<std::string> plainHosts;  // of AllowPlain
  // Hosts that offer no encryption.
  std::vector<std::string> unencrypted;
  bool closed = true;  // no POP3 connection is open

  // What a number of the server means when the whole mail is fetched; "" what its head says.
  std::string fetchedSubject;

  // Fails the n-th call from now of an operation (1 is the next).
  void failAt(const std::string& operation, int call, Outcome outcome) {
    failing_ = operation;
    callsLeft_ = call;
    failure_ = std::move(outcome);
  }

  std::unique_ptr<MailEngine> load(FileSystem& files) override;

 private:
  class Engine;
  class Message;
  class Bundle;
  class Draft;

  Outcome called(const std::string& operation, std::string_view argument = {}) {
    calls.push_back(operation + (argument.empty() ? "" : " ") + std::string(argument));
    if (operation != failing_ || callsLeft_ == 0 || --callsLeft_ > 0) return {};
    return failure_;
  }
  template <class T>
  Result<T> answer(const std::string& operation, T value) {
    if (Outcome failure = called(operation); !failure.ok()) return failure;
    return value;
  }
  Outcome reached(const std::string& host) {
    if (std::ranges::count(unencrypted, host) == 0 || std::ranges::count(plainHosts, host) > 0)
      return {};
    return Outcome::failure(err::mailNotEncrypted, host);
  }

  std::string failing_;
  int callsLeft_ = 0;
  Outcome failure_;
};

}  // namespace skv::test
