#include "tour_mail.h"

#include <QPushButton>
#include <QTest>

namespace skv::tour {

void MailRoad::take() {
  accounts();
  write();
}

void MailRoad::accounts() {
  user_.stage("The mail accounts, and who sends");
  user_.expect("frmSettings", [this](QWidget&) {
    user_.clickTab("tabSettings", "EMail");
    user_.type("txtSMTPHost", "smtp.example.org:587");
    user_.type("txtOutlookFolder", (sample_.driveC / "Inbox").string());
    user_.expect("frmIdentity", [this](QWidget& window) {
      user_.type("txtFirstName", "Anna");
      user_.type("txtLastName", "Berg");
      user_.type("txtEMail", "anna@example.org");
      user_.picture("sender");
      QTest::mouseClick(window.findChild<QPushButton*>("btnOK"), Qt::LeftButton);
    });
    user_.click("btnIdentity");
    user_.picture("mail-accounts");
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

}  // namespace skv::tour
