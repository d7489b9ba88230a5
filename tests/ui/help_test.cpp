#include "ui/help.h"

#include "core/settings_keys.h"
#include "support/program_fixture.h"

namespace skv::test {

constexpr const char* server = "http://127.0.0.1:8000";

class HelpTest : public ProgramTest {
 protected:
  HelpTest() { app.AppVersionText = "1.02.0021"; }
  std::string lastCheck() { return readSetting(app, setting::LastVersionCheck); }
};

TEST_F(HelpTest, ANewerVersionIsOfferedAndOpenedInTheBrowser) {
  web.body = "Newest version: 1.03.0001 <a href=>https://example.org/skv.zip> end";
  checkForUpdate(app, server);
  EXPECT_TRUE(holds(windows.boxes.back().text, "A newer version")) << "blanks count for nothing";
  web.body = "Version:\t1.02.0021";
  checkForUpdate(app, server);
  EXPECT_EQ(windows.boxes.back().text, "Your version is up to date!");

  web.body = "Version:1.03.0001 >\r\n https://example.org/skv.zip \r\n";
  windows.answers = {ui::Answer::yes};
  checkForUpdate(app, server);
  EXPECT_EQ(web.fetched.back(), "http://127.0.0.1:8000/home/tolmere/SKVVersion.txt");
  EXPECT_EQ(windows.boxes.back().text,
            "A newer version of SKV is available:\r\rYour version: 1.02.0021\rNew version: "
            "1.03.0001\r\rDo you want to download the new version?");
  EXPECT_EQ(shell.opened, std::vector<std::string>{"https://example.org/skv.zip"});
  EXPECT_EQ(lastCheck(), "46350.5");
  EXPECT_EQ(app.frmMain.lblStatus.caption, "");
}

TEST_F(HelpTest, NothingButAWebAddressReachesTheBrowser) {
  for (const char* address : {"file:///etc/passwd", "C:\\evil.exe", "javascript:x", "mailto:x"}) {
    web.body = "v:9.99.9999>" + std::string(address) + ">";
    windows.answers = {ui::Answer::yes, ui::Answer::ok};
    checkForUpdate(app, server);
  }
  EXPECT_TRUE(shell.opened.empty());
  web.body = "v:9.99.9999>" + std::string(60000, 'y');
  windows.answers = {ui::Answer::yes};
  checkForUpdate(app, server);
  EXPECT_LT(windows.boxes.back().text.size(), 500U) << "a page in the server's place";
}

TEST_F(HelpTest, APageThatIsNoVersionIsNotUpToDate) {
  for (const char* page :
       {"", "<html><a href=http://login>", "v:1.0", "v:1.02.002", "v:1.02.002x"}) {
    web.body = page;
    checkForUpdate(app, server);
    EXPECT_TRUE(holds(windows.boxes.back().text, "answered without a version")) << page;
    EXPECT_EQ(lastCheck(), "") << "the next start looks again";
  }
}

TEST_F(HelpTest, TheManualOpensInABrowserWhereThereIsNoWordProcessor) {
  app.AppDir = "C:\\Program\\";
  for (const bool wordProcessor : {true, false}) {
    shell.wordProcessor = wordProcessor;
    app.frmMain.mnuHelpManual.click();
  }
  EXPECT_EQ(shell.opened,
            (std::vector<std::string>{"C:\\Program\\Skyvault.doc", "C:\\Program\\Skyvault.html"}));
}

TEST_F(HelpTest, AFailedCheckIsToldAndMadeAgain) {
  web.failure = Outcome::withText(err::web, "cut off");
  windows.answers = {ui::Answer::ok};
  checkForUpdate(app, server);
  EXPECT_EQ(lastCheck(), "");
  EXPECT_EQ(app.frmMain.lblStatus.caption, "");
  EXPECT_TRUE(app.frmMain.mnuHelpDownload.enabled);

  // A copy without a server says who keeps it up to date.
  windows.answers = {ui::Answer::ok};
  checkForUpdate(app, "");
  EXPECT_TRUE(holds(windows.boxes.back().text, "package manager"));
  EXPECT_EQ(web.fetched.size(), 1U);
}

TEST_F(HelpTest, AStartAsksWhenTheLastCheckIsMoreThanAWeekAgo) {
  const auto dueAfter = [this](const char* last) {
    settings.values["General/LastVersionCheck"] = last;
    return updateCheckIsDue(app, server);
  };
  EXPECT_TRUE(updateCheckIsDue(app, server)) << "never";
  EXPECT_TRUE(dueAfter("46343.49"));
  EXPECT_FALSE(dueAfter("46343.5")) << "seven days to the minute";
  EXPECT_FALSE(dueAfter("46350.5"));
  EXPECT_FALSE(updateCheckIsDue(app, "")) << "nobody to ask";
}

}  // namespace skv::test
