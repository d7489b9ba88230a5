#include "mail/mail_pack.h"

#include "aircraft/aircraft_views.h"
#include "support/every_call.h"
#include "support/scenery_fixture.h"

namespace skv::test {

class MailPackTest : public SceneryTest {
 protected:
  MailPackTest() {
    settings.values["Mail/EMail"] = "anna@example.org";
    settings.values["Mail/FirstName"] = app.SenderIdentity.FirstName = "Anna";
    settings.values["Mail/LastName"] = app.SenderIdentity.LastName = "Berg";
    settings.values["Mail/SMTPHost"] = "smtp.example.com";
    drive.write("C:\\Hangar\\aircraft\\Cessna\\aircraft.cfg", "[fltsim.0]\r\ntitle=The Cessna\r\n");
    drive.write("C:\\Hangar\\aircraft\\Cessna\\model\\c.mdl", "model");
    drive.write("C:\\Hangar\\SKV_AC.lst", line("The Cessna", "C:\\Hangar\\aircraft\\Cessna\\") +
                                              line("Other", "C:\\Hangar\\aircraft\\Other\\"));
    showHangar();
  }
  void showHangar() {
    mnuViewHangar_Click(app);
    select(form.lstAircraft, 1);
    windows.boxes.clear();
  }
  void openPack() {
    click(form.mnuFileMailPack);
    EXPECT_TRUE(pack.visible);
    pack.txtEMail.text = "ben@example.net";
  }
  // Answers what was told.
  Lines send() {
    windows.boxes.clear();
    mail.calls.clear();
    click(pack.btnSend);
    expectIdle();
    EXPECT_TRUE(pack.btnSend.enabled && pack.btnCancel.enabled && !pack.sending);
    EXPECT_FALSE(pack.lblStatus.showsProgress);
    return windows.boxTexts();
  }
  void makePackage() { drive.write("C:\\Packs\\Cessna.zip", "as it is"); }

  ui::FrmMailPack& pack = app.frmMailPack;
  const std::string cessna = "C:\\Hangar\\aircraft\\Cessna\\", model = cessna + "model\\c.mdl",
                    packed = "C:\\Packs\\Cessna.zip";
};

TEST_F(MailPackTest, AnAircraftThatHasNoPackageIsPackedAndSent) {
  form.imgAircraft.picture = "C:\\a.jpg";
  openPack();
  EXPECT_EQ(pack.imgAC.picture, "C:\\a.jpg");
  EXPECT_EQ(pack.lblAddon.caption, "Aircraft: Cessna.zip");
  pack.txtMsg.text = "Hello Ben,\n\nhere it is.";
  send();
  expectTold("\"Cessna\" has no Package yet.");
  EXPECT_TRUE(mail.sent.empty() && drive.exists(model)) << "called off";
  windows.answers = {no};
  send();
  ASSERT_EQ(mail.sent.size(), 1U);
  const SentMail& sent = mail.sent[0];
  EXPECT_EQ(sent.subject, "/FSSkyvaultPack/AC/Cessna.zip");
  EXPECT_EQ(sent.to + sent.displayName, "ben@example.netben@example.net");
  EXPECT_EQ(sent.fromName + "|" + sent.from, "Anna Berg|anna@example.org");
  EXPECT_EQ(sent.body, "Hello Ben,\r\n\r\nhere it is.\r\n\r\n" + std::string(40, '=') +
                           "\r\nThis Flight Simulator Addon has been packaged\r\n"
                           "and sent to you from within FS Skyvault.\r\n"
                           "If you do not have this great software yet,\r\n"
                           "you  may download it here:\r\n"
                           "https://www.example.org/modules.php?name=Downloads&d_op=getit&lid=15"
                           "\r\n");
  ASSERT_EQ(sent.attachments.size(), 1U);
  EXPECT_EQ(sent.attachments[0].name, "Cessna.zip");
  EXPECT_EQ(sent.attachments[0].content, drive.read("C:\\Packs\\Cessna.zip"));
  EXPECT_TRUE(sent.attachments[0].content.starts_with("PK"));
  EXPECT_FALSE(drive.exists(model));
  EXPECT_TRUE(pack.visible && pack.lblStatus.caption == "");
  EXPECT_EQ(pack.txtMsg.text, "Hello Ben,\n\nhere it is.") << "ready for the next one";

  makePackage();
  pack.txtMsg.text = "";
  send();
  EXPECT_EQ(mail.sent.back().attachments[0].content, "as it is");
  EXPECT_TRUE(mail.sent.back().body.starts_with("\r\n\r\n====="));
}

TEST_F(MailPackTest, TheSendersOwnAircraftComesBackWhenHeWants) {
  openPack();
  for (const bool outlook : {false, true})
    for (const bool fails : {false, true}) {
      SCOPED_TRACE(outlook ? "Outlook" : "POP3");
      pack.cmbMailType.listIndex = outlook ? 1 : 0;
      if (fails)
        mail.failAt(outlook ? "SendMailByOutlook" : "SendMail", 1, Outcome::failure(err::mail));
      windows.answers = {yes};
      send();
      EXPECT_EQ(windows.boxes.size(), fails ? 2U : 1U);
      EXPECT_EQ(drive.read(model), "model");
      EXPECT_FALSE(drive.exists(packed));
      EXPECT_EQ(drive.tree(app.InstallTempDir), Lines{});
      const auto& sent = outlook ? mail.handedOver : mail.sent;
      EXPECT_EQ(sent.size(), 1U);
      EXPECT_TRUE(sent.back().attachments[0].content.starts_with("PK"));
    }
  // A mail program reads the file later, when the Package is gone.
  EXPECT_EQ(std::ranges::count(mail.calls, "AddAttachment " + packed), 0);
}

TEST_F(MailPackTest, APackageThatIsOlderThanItsAircraftIsMadeAnew) {
  drive.write(cessna + "panel\\panel.cfg", "old");
  openPack();
  windows.answers = {no};
  send();
  const std::string first = drive.read(packed);
  send();
  EXPECT_TRUE(windows.boxes.empty());
  const auto edit = [&] {
    drive.write(cessna + "panel\\panel.cfg", "edited");
    drive.setModified(cessna + "panel\\panel.cfg", {4000000000, 0});
  };
  edit();
  send();
  expectTold("\"Cessna\" was changed since its Package was made. Newer files: 1, the first: \"" +
             cessna + "panel\\panel.cfg\"");
  EXPECT_EQ(mail.sent.size(), 2U) << "called off";
  windows.answers = {no};
  send();
  EXPECT_EQ(mail.sent.back().attachments[0].content, first);
  // Whatever call is the last, the next try sends what the user has edited.
  forEveryCall(
      files, Ending::kill,
      [&] {
        drive.clear("C:\\Temp\\SKVInstallTemp");
        drive.clear(cessna);
        drive.write(cessna + "aircraft.cfg", "[fltsim.0]\r\ntitle=The Cessna\r\n");
        drive.write(packed, first);
        edit();
        showHangar();
      },
      [&] {
        windows.answers = {yes};
        send();
      },
      [&](bool) {
        form.enabled = pack.btnSend.enabled = pack.btnCancel.enabled = true;
        pack.sending = false;
        drive.clear("C:\\Temp\\SKVInstallTemp");
        showHangar();
        windows.answers = {yes};
        send();
        windows.answers.clear();
        EXPECT_EQ(drive.read(cessna + "panel\\panel.cfg"), "edited");
        drive.write("C:\\sent.zip", mail.sent.back().attachments[0].content);
        const auto sent = zip.load(disk);
        ASSERT_TRUE(sent->setArchivefile("C:\\sent.zip").ok());
        EXPECT_TRUE(
            sent->holdsFile("Aircraft\\panel\\panel.cfg", cessna + "panel\\panel.cfg").ok());
        EXPECT_EQ(sent->entries().size(), 3U);
      });
}

TEST_F(MailPackTest, RecipientsAreTakenAsPeopleWriteThem) {
  makePackage();
  openPack();
  for (const auto& [typed, names, addresses] : std::initializer_list<std::array<std::string, 3>>{
           {" ben@example.net ", "ben@example.net", "ben@example.net"},
           {"Ben B <ben@example.net>", "Ben B", "ben@example.net"},
           {"\"B, Ben; x\" < b@c.de >;; d@e.fr, <f@g.it>,", "B, Ben; x|d@e.fr|f@g.it",
            "b@c.de|d@e.fr|f@g.it"},
           {"Meier, Ben <b@c.de>, d@e.fr", "Meier, Ben|d@e.fr", "b@c.de|d@e.fr"}}) {
    pack.txtEMail.text = typed;
    EXPECT_EQ(send(), Lines{});
    EXPECT_EQ(mail.sent.back().displayName, names);
    EXPECT_EQ(mail.sent.back().to, addresses);
  }
  pack.txtEMail.text = "ben@example.net, nobody";
  EXPECT_EQ(send().size(), 1U);
}

TEST_F(MailPackTest, ASceneryGoesByTheWayThatIsRemembered) {
  drive.write("C:\\Lib\\Scenery\\Rome\\Scenery\\r.bgl", "r");
  putLibrary("Rome|ADDON SCENERY\\Rome||||||\r\n");
  select(form.lstInactScenery, 1);
  form.imgScenery.picture = "C:\\r.jpg";
  drive.write("C:\\Packs\\Scenery\\Rome.zip", "scenery");
  settings.values["Mail/SMTPUserName"] = "anna";
  openPack();
  pack.cmbMailType.listIndex = 1;
  click(pack.cmbMailType);
  EXPECT_EQ(settings.values["Mail/Type"], "1");
  click(pack.btnCancel);
  EXPECT_FALSE(pack.visible);
  openPack();
  EXPECT_EQ(pack.cmbMailType.items.get(), (Lines{"POP3", "Outlook"}));
  EXPECT_EQ(pack.cmbMailType.listIndex, 1);
  EXPECT_EQ(send(), Lines{});
  ASSERT_EQ(mail.handedOver.size(), 1U);
  EXPECT_EQ(mail.handedOver[0].subject, "/FSSkyvaultPack/SC/Rome.zip");
  EXPECT_EQ(mail.handedOver[0].attachments[0].content, "scenery");
  EXPECT_TRUE(std::ranges::none_of(
      mail.calls, [](const std::string& call) { return call.starts_with("SetSmtp"); }));

  // The add-on of the dialog, whatever is on screen by now.
  showHangar();
  send();
  EXPECT_EQ(mail.handedOver.back().subject, "/FSSkyvaultPack/SC/Rome.zip");
  drive.remove("C:\\Packs\\Scenery\\Rome.zip");
  send();
  expectTold("\"Rome\" has no Package, and none can be made");
  EXPECT_EQ(mail.handedOver.size(), 2U);
}

TEST_F(MailPackTest, TheHangarAloneAndASenderAreNeeded) {
  mnuViewFSAircraft_Click(app);
  click(form.mnuFileMailPack, "This feature works from Hangar only!");
  EXPECT_FALSE(pack.visible);
  open();
  click(form.mnuFileMailPack);
  EXPECT_TRUE(pack.visible && pack.scenery) << "whatever the view before the Scenery Manager";
  pack.closed();

  showHangar();
  for (const char* key : {"EMail", "FirstName", "LastName"})
    settings.values["Mail/" + std::string(key)].clear();
  click(form.mnuFileMailPack);
  EXPECT_EQ(windows.boxTexts(),
            (Lines{"You must specify your EMail address!", "You must specify your Firstname!",
                   "You must specify your Lastname!"}));
  EXPECT_TRUE(pack.visible);
  pack.closed();
  windows.boxes.clear();
  windows.onShow[&app.frmIdentity] = [&] {
    auto& identity = app.frmIdentity;
    identity.txtEMail.text = "nobody";
    click(identity.btnOK);
    EXPECT_TRUE(identity.visible) << "that is no address";
    identity.txtEMail.text = " zoe@example.org ";
    identity.txtFirstName.text = "Zoe";
    identity.txtLastName.text = "Young";
    click(identity.btnOK);
  };
  makePackage();
  openPack();
  EXPECT_EQ(windows.boxes.size(), 2U) << "one dialog for all three";
  send();
  EXPECT_EQ(mail.sent.back().fromName + "|" + mail.sent.back().from, "Zoe Young|zoe@example.org");
}

TEST_F(MailPackTest, AFailedStepIsToldAndTheDialogStaysReady) {
  makePackage();
  openPack();
  const auto fault = Outcome::withText(err::mail, "refused");
  for (const auto& [operation, status] :
       {std::pair("AddRecipient", ""),
        {"SetFromAddress", ""},
        {"AddAttachment", "Attaching Cessna.zip ... Please wait!"},
        {"SetAttachmentName", "Attaching Cessna.zip ... Please wait!"},
        {"SendMail", "Sending  Cessna.zip ... Please wait!"}}) {
    SCOPED_TRACE(operation);
    pack.lblStatus.caption = "";
    mail.failAt(operation, 1, fault);
    EXPECT_EQ(send(), Lines{"Error #31100\r\nrefused"});
    EXPECT_EQ(pack.lblStatus.caption, status);
    EXPECT_TRUE(mail.sent.empty() && pack.visible);
  }
  settings.values["Mail/SMTPHost"] = "";
  mail.failAt("SendMail", 1, fault);
  EXPECT_TRUE(holds(send().at(0), "There is no \"SMTP Mailhost:\" yet"));
  form.enabled = false;  // another operation runs
  click(pack.btnSend);
  EXPECT_TRUE(holds(windows.boxTexts().back(), "still at work"));
  form.enabled = true;
  send();
  EXPECT_EQ(mail.sent.size(), 1U);
}

TEST_F(MailPackTest, TheLoginGoesToTheServerThatTheUserHasAllowed) {
  makePackage();
  settings.values["Mail/SMTPUserName"] = "anna";
  settings.values["Mail/SMTPPassword"] = "secret";
  mail.unencrypted = {"smtp.example.com"};
  openPack();
  EXPECT_EQ(send().size(), 1U);
  EXPECT_TRUE(mail.sent.empty() && pack.lblStatus.caption == "");
  windows.answers = {yes};
  EXPECT_EQ(send().size(), 1U);
  EXPECT_EQ(mail.sent.size(), 1U);
  EXPECT_EQ(std::ranges::count(mail.calls, "SetSmtpPassword secret"), 1);
  mail.plainHosts.clear();
  EXPECT_EQ(send(), Lines{});
  secrets.runs = false;
  EXPECT_TRUE(holds(send().at(0), "SMTP password cannot be read"));
  EXPECT_EQ(mail.sent.size(), 2U);
}

TEST_F(MailPackTest, TheDialogThatIsClosedHalfWayStopsTheMail) {
  makePackage();
  openPack();
  windows.onYield = [&] {
    if (windows.yields % 500 != 0 || !pack.sending) return;
    EXPECT_FALSE(form.enabled || pack.btnSend.enabled || pack.btnCancel.enabled);
    pack.closed();
  };
  send();
  EXPECT_EQ(mail.sent.size(), 1U) << "No: it goes on";
  EXPECT_TRUE(pack.visible);
  windows.answers = {yes};
  send();
  EXPECT_EQ(mail.sent.size(), 1U);
  EXPECT_FALSE(pack.visible);
  EXPECT_EQ(form.lblStatus.notice, "\"Cessna.zip\" was not sent");
}

}  // namespace skv::test
