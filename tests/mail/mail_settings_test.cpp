#include "ui/mail_settings.h"

#include "mail/passwords.h"
#include "support/program_fixture.h"

namespace skv::test {

class MailSettingsTest : public ProgramTest {
 protected:
  MailSettingsTest() { storeSettings(); }
  // Opens the dialog, plays the user and accepts. Answers the boxes.
  std::vector<std::string> accept(const std::function<void()>& user) {
    windows.boxes.clear();
    windows.onShow[&form] = [this, user] {
      user();
      ui::raise(form.btnOK.click);
      accepted = !form.visible;
      if (form.visible) form.closed();
    };
    app.frmMain.mnuFileSettings.click();
    return windows.boxTexts();
  }
  std::string stored(const std::string& key) { return settings.values["Mail/" + key]; }
  bool accepted = false;
  ui::FrmSettings& form = app.frmSettings;
};

TEST_F(MailSettingsTest, PasswordsGoWhereTheDesktopKeepsThem) {
  secrets.runs = false;
  accept([&] {
    EXPECT_EQ(form.txtPOPPort.text, "110");
    form.txtPOPPassword.text = "in the file";
    form.txtSMTPHost.text = "smtp:587";
    form.txtSMTPUserName.text = "anna";
  });
  EXPECT_EQ(stored("POPPassword"), "in the file");
  EXPECT_EQ(stored("SMTPHost") + " " + stored("SMTPUserName") + " " + stored("POPPort"),
            "smtp:587 anna 110");

  secrets.runs = true;
  accept([&] {
    EXPECT_EQ(form.txtPOPPassword.text, "in the file");
    form.txtSMTPPassword.text = "new";
  });
  EXPECT_EQ(secrets.kept["POPPassword"] + "|" + secrets.kept["SMTPPassword"], "in the file|new");
  EXPECT_EQ(stored("POPPassword") + stored("SMTPPassword"), "");

  // The desktop's service is away: what it keeps is not replaced by an empty field, and what is
  // typed now is the newer one.
  secrets.runs = false;
  EXPECT_EQ(accept([&] { form.txtSMTPPassword.text = "newer"; }).size(), 2U);
  EXPECT_TRUE(accepted);
  EXPECT_EQ(secrets.kept["POPPassword"], "in the file");
  secrets.runs = true;
  EXPECT_EQ(readPassword(app, popPassword).valueOr(""), "in the file");
  EXPECT_EQ(readPassword(app, smtpPassword).valueOr(""), "newer");

  accept([&] { form.txtPOPPassword.text = ""; });
  EXPECT_EQ(secrets.kept["POPPassword"] + stored("POPPasswordPlace"), "");
  EXPECT_EQ(secrets.kept["SMTPPassword"], "newer");
}

TEST_F(MailSettingsTest, APasswordThatTheDesktopRefusesIsAskedAbout) {
  secrets.refuses = true;
  EXPECT_EQ(accept([&] { form.txtPOPPassword.text = "p"; }).size(), 1U);
  EXPECT_FALSE(accepted);
  EXPECT_EQ(stored("POPPassword"), "");
  windows.answers = {ui::Answer::yes};
  accept([&] { form.txtPOPPassword.text = "p"; });
  EXPECT_TRUE(accepted);
  EXPECT_EQ(stored("POPPassword"), "p");
}

TEST_F(MailSettingsTest, TheMailFolderIsChosenAmongThoseFoundOrPicked) {
  mail.folders = {{"Local Folders/Inbox", {}}, {"Mail/work", {}}};
  accept([&] {
    form.tabSettings.click(1);
    ASSERT_EQ(form.cmbOutlookFolders.items->size(), 3U);
    form.cmbOutlookFolders.listIndex = 2;
    ui::raise(form.cmbOutlookFolders.click);
  });
  EXPECT_EQ(stored("OutlookFolder"), "Mail/work");
  windows.picks = {"C:\\mail\\Inbox"};
  accept([&] { ui::raise(form.btnOutlookFile.click); });
  EXPECT_EQ(stored("OutlookFolder"), "C:\\mail\\Inbox");
}

}  // namespace skv::test
