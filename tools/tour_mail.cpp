#include "tour_mail.h"

#include <QByteArray>
#include <QInputDialog>
#include <QPushButton>
#include <QTest>
#include <fstream>

#include "sample/sample_files.h"

namespace skv::tour {

namespace {

constexpr const char* archive = "C22_HARROW.ZIP";
constexpr const char* note =
    "From: Ben <ben@example.org> Subject: Fwd: /FSSkyvaultPack/AC/Harrow by mail.zip "
    "File: Harrow by mail.zip (about 0.2 MB)  Hello Anna,  this is the Harrow that I told you "
    "about.";

// A mail as a friend's program has sent it, in a folder of a mail program.
std::string mailFolder(const std::string& content) {
  const QByteArray lines = QByteArray::fromStdString(content).toBase64();
  std::string text =
      "From ben@example.org Sat Nov 21 10:00:00 2026\n"
      "From: Ben <ben@example.org>\n"
      "To: anna@example.org\n"
      "Subject: Fwd: /FSSkyvaultPack/AC/Harrow by mail.zip\n"
      "Date: Sat, 21 Nov 2026 10:00:00 +0000\n"
      "MIME-Version: 1.0\n"
      "Content-Type: multipart/mixed; boundary=part\n\n"
      "--part\nContent-Type: text/plain\n\n"
      "Hello Anna,\n\nthis is the Harrow that I told you about.\n\n"
      "--part\nContent-Type: application/zip; name=\"Harrow by mail.zip\"\n"
      "Content-Transfer-Encoding: base64\n"
      "Content-Disposition: attachment; filename=\"Harrow by mail.zip\"\n\n";
  constexpr int lineLength = 76;
  for (int i = 0; i < lines.size(); i += lineLength) text += lines.mid(i, lineLength) + "\n";
  return text + "--part--\n\n";
}

}  // namespace

void MailRoad::take() {
  accounts();
  write();
  install();
}

void MailRoad::accounts() {
  user_.stage("The mail accounts, and who sends");
  user_.expect("frmSettings", [this](QWidget&) {
    user_.clickTab("tabSettings", "EMail");
    user_.type("txtPOPUserName", "anna");
    user_.type("txtPOPHost", "pop.example.org");
    user_.type("txtSMTPHost", "smtp.example.org:587");
    user_.type("txtSMTPUserName", "anna");
    user_.type("txtOutlookFolder", "Thunderbird/Local Folders/Inbox");
    user_.expect("frmIdentity", [this](QWidget& window) {
      user_.type("txtFirstName", "Anna");
      user_.type("txtLastName", "Berg");
      user_.type("txtEMail", "anna@example.org");
      user_.picture("sender");
      QTest::mouseClick(window.findChild<QPushButton*>("btnOK"), Qt::LeftButton);
    });
    user_.click("btnIdentity");
    user_.picture("mail-accounts");
    user_.type("txtOutlookFolder", inbox().string());
    user_.click("btnOK");
  });
  user_.press(Qt::Key_F2);
  user_.allAnswered();
}

void MailRoad::write() {
  user_.stage("A Package for a friend");
  user_.press(Qt::Key_H, Qt::ControlModifier);
  user_.clickRow("lstAircraft", User::rowOf("lstAircraft", "Moorhen M6 Flying Boat"));
  user_.chooseMenu({"File", "Email Package to a Friend..."}, "mail-menu");
  user_.allAnswered();
  require(User::text("lblAddon") == "Aircraft: moorhen_m6.zip",
          "the dialog is for " + User::text("lblAddon"));
  user_.type("txtEMail", "ben@example.org");
  User::find("txtMsg").setFocus();
  QTest::keyClicks(QApplication::focusWidget(), "Hello Ben,\r\rhere is the flying boat.");
  user_.picture("mail-package");
  user_.click("btnCancel");
  require(!User::shows("frmMailPack"), "the dialog stays");
}

void MailRoad::install() {
  user_.stage("An aircraft from a mail folder");
  std::ofstream(inbox()) << mailFolder(sample::readFile(sample_.downloads / archive));
  user_.expectBox(note, "Install");
  user_.expect("inputBox", [](QWidget& window) {
    auto& box = dynamic_cast<QInputDialog&>(window);
    require(box.textValue() == "Harrow by mail", "the box offers another name");
    box.accept();
  });
  user_.chooseMenu({"File", "Install SKV Addon from Email", "Outlook"});
  user_.allAnswered();
  require(User::cell("lstAircraft", User::selectedRow("lstAircraft"), 0) ==
              "Calder C-22 Harrow Aurelis Air OA-C22",
          "the new row is not selected");
  user_.picture("installed-from-mail");
  user_.expectBox(note, "OK");
  // Its readme has no place in the Hangar, so that the archive holds more than stands there.
  user_.expectBox("\"Harrow by mail\" is installed already, but", "OK");
  user_.chooseMenu({"File", "Install SKV Addon from Email", "Outlook"});
  user_.allAnswered();
  std::filesystem::remove(inbox());
}

}  // namespace skv::tour
