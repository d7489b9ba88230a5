// The Package that a mail takes along, and what becomes of the sender's own add-on by that: a
// Package is made by compressing the add-on, which thins it out.
#pragma once

#include <string>
#include <vector>

#include "core/app.h"
#include "mail/mail_kind.h"

namespace skv {

class PackageToSend {
 public:
  // Of the add-on that the dialog is for.
  PackageToSend(App& app, const MailKind& kind);

  // The Package as it stands, or made now, when the user agrees to what that means. False when
  // there is none to send; the user has been told or has called it off.
  bool prepare();
  // Whether he has called it off.
  bool declined() const { return declined_; }
  // The path of the file to attach: a copy for a mail program, which reads it when its user sends
  // the mail at last, where the Package itself will be gone by then.
  Result<std::string> fileFor(bool mailProgram);
  // After the mail, whatever has become of it: uncompresses the add-on when the user wants that.
  void giveBack();

  const std::string& file() const { return file_; }  // its name

 private:
  using Paths = std::vector<std::string>;

  bool askAnew(const Paths& edited);
  bool askToCompress();
  bool makeAnew(const Paths& edited);
  bool make();
  Result<Paths> filesOfAddon() const;
  Result<Paths> editedOf(const Paths& files) const;
  Outcome finishHalf(const Paths& files);
  bool selectAddon();
  bool fails(const Outcome& outcome);

  App& app_;
  ui::FrmMailPack& form_;
  const MailKind& kind_;
  const std::string name_, file_, package_;
  std::string copy_;  // of the Package; "" for none
  bool wantsBack_ = false;
  bool declined_ = false;
};

}  // namespace skv
