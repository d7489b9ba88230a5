// The mail folders that the mail programs of this machine keep, and the one that a user means.
//
// Found are those of Thunderbird and its kin, of Evolution and KMail, also in Flatpak and snap,
// ~/Maildir, ~/Mail, ~/mail and the machine's own mailbox. The home itself is not searched.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/file_system.h"

namespace skv {

struct MailFolder {
  std::string name;  // its levels: "Thunderbird/anna@example.org/Inbox/Friends"
  std::string path;  // native
  bool maildir = false;
  int above = 0;  // how many levels of the name are the mail program's and the account's
};

// By name.
std::vector<MailFolder> localMailFolders();

// `text` is a path, native ("/...", "~/...") or of Windows, or the levels of a folder. Those may
// begin at the mail program, the account, the account's folders or anywhere below. The first of
// these that fits counts, exact letters before others, and of folders that fit alike those that are
// not empty. Where several are left, the text of the failure names them.
Result<MailFolder> findMailFolder(std::string_view text, const FileSystem& files);

}  // namespace skv
