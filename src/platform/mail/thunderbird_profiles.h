// Where Thunderbird and its kin keep mails: for each account of each profile a folder.
//
//   ~/.thunderbird/profiles.ini          [Profile0] Path=ab12.default IsRelative=1
//   ~/.thunderbird/ab12.default/
//     prefs.js                           user_pref("mail.server.server2.name", "anna@example.org");
//     Mail/Local Folders/                Inbox, Inbox.sbd/Friends
//     Mail/pop.example.org/, ImapMail/imap.example.org/
#pragma once

#include <string>
#include <vector>

namespace skv {

struct MailAccount {
  std::string name;    // as the mail program shows it
  std::string folder;  // native path
};

// `root`: the folder of profiles.ini. In the order of the profiles.
std::vector<MailAccount> thunderbirdAccounts(const std::string& root);

}  // namespace skv
