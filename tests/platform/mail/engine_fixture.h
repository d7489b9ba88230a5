// A mail engine and servers for it that do what a test says.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/mail/curl_mail_engine.h"
#include "platform/mail/mail_servers.h"
#include "support/disk_fixture.h"
#include "support/text.h"

namespace skv::test {

using namespace std::chrono_literals;

inline std::string mailOf(const std::string& subject, const std::string& rest = "\r\nBody\r\n") {
  return "From: a@example.com\r\nSubject: " + subject + "\r\n" + rest;
}

struct EngineTest : DiskTest {
  std::unique_ptr<MailEngine> load(const std::string& caFile = {},
                                   const std::vector<int>& tlsPorts = {},
                                   std::chrono::milliseconds silence = 20s) {
    system = std::make_unique<CurlMailSystem>(
        MailOptions{caFile, drive.native() + "/work", tlsPorts, 20s, silence});
    return system->load(files);
  }
  // For a server that answers every login.
  std::unique_ptr<MailEngine> loadFor(const RudeServer& server,
                                      std::chrono::milliseconds silence = 20s) {
    auto engine = load({}, {}, silence);
    engine->SetPopHost(server.host());
    engine->SetPopUserName("pilot");
    engine->SetPopPassword("secret word");
    return engine;
  }
  static std::vector<std::string> subjects(const MailBundle& bundle) {
    std::vector<std::string> found;
    for (int at = 0; at < bundle.MessageCount(); ++at)
      found.push_back(bundle.MessageAt(at).value()->GetSubject());
    return found;
  }
  std::unique_ptr<CurlMailSystem> system;
};

// A mailbox of a server in a test, of the plainest kind.
struct Mailbox {
  std::vector<std::string> mails;
  bool knowsTop = true, knowsUidl = true;
  std::string cutAt;  // the command on which the server hangs up, having done what it says
  int cuts = 0;       // how often
  std::vector<bool> marked = std::vector<bool>(mails.size());
  int sessions = 0;
  bool namesPlaces = false;  // UIDL tells where a mail is, not which one it is

  std::optional<std::string> operator()(const std::string& line) {
    const std::string verb = line.substr(0, 4);
    const std::size_t number = line.size() > 5 ? std::strtoul(&line[4], nullptr, 10) : 0;
    std::string answer = reply(verb, number);
    if (!cutAt.empty() && verb == cutAt && cuts > 0 && --cuts >= 0) return {};
    return answer;
  }

 private:
  std::string reply(const std::string& verb, std::size_t number) {
    if (verb.empty()) {
      ++sessions;
      marked.assign(mails.size(), false);
      return "+OK ready\r\n";
    }
    if (verb == "CAPA") return "-ERR what?\r\n";
    if (verb == "STAT") return "+OK " + std::to_string(mails.size()) + " 0\r\n";
    if (verb == "QUIT") {
      for (std::size_t at = mails.size(); at-- > 0;)
        if (marked[at]) mails.erase(mails.begin() + static_cast<std::ptrdiff_t>(at));
    }
    const auto uid = [this](std::size_t at) {
      return "id" + std::to_string(namesPlaces ? at : std::hash<std::string>()(mails[at]));
    };
    if (verb == "LIST" && number >= 1 && number <= mails.size())
      return "+OK " + std::to_string(number) + " " + std::to_string(mails[number - 1].size()) +
             "\r\n";
    if (verb == "UIDL" && knowsUidl && number >= 1 && number <= mails.size())
      return "+OK " + std::to_string(number) + " " + uid(number - 1) + "\r\n";
    if ((verb == "UIDL" && knowsUidl && number == 0) || (verb == "LIST" && number == 0)) {
      std::string all = "+OK\r\n";
      for (std::size_t at = 0; at < mails.size(); ++at)
        all += std::to_string(at + 1) + " " +
               (verb == "UIDL" ? uid(at) : std::to_string(mails[at].size())) + "\r\n";
      return all + ".\r\n";
    }
    if (verb == "UIDL" || (verb == "TOP " && !knowsTop)) return "-ERR what?\r\n";
    if (verb == "TOP " || verb == "RETR" || verb == "DELE") {
      if (number < 1 || number > mails.size()) return "-ERR no such mail\r\n";
      if (verb != "DELE") return "+OK\r\n" + mails[number - 1] + ".\r\n";
      marked[number - 1] = true;
    }
    return "+OK\r\n";
  }
};

}  // namespace skv::test
