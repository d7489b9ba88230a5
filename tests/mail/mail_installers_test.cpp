#include "mail/mail_installers.h"

#include "aircraft/aircraft_views.h"
#include "sample/zip_file.h"
#include "support/scenery_fixture.h"

namespace skv::test {

const std::string plane =
    sample::zipBytes({{"aircraft.cfg", "[fltsim.0]\r\nTitle=The Plane\r\n"}, {"model/a.mdl", "m"}});
const std::string rome = sample::zipBytes({{"Scenery/r.bgl", "r"}});
const std::string noneFound = "No attachments found!", already = "Addon already installed!";

class MailInstallTest : public SceneryTest {
 protected:
  MailInstallTest() {
    settings.values["Mail/POPHost"] = "pop.example.com";
    settings.values["Mail/OutlookFolder"] = "Inbox";
    windows.usual["Install"] = yes;
    mnuViewHangar_Click(app);
    windows.boxes.clear();
  }
  static ScriptedMailItem aircraft(const std::string& name, const std::string& content = plane) {
    return {"Re: /FSSkyvaultPack/AC/" + name, "note of " + name, {{name, content}}};
  }
  static ScriptedMailItem scenery(const std::string& name) {
    return {"/FSSkyvaultPack/SC/" + name, "note of " + name, {{name, rome}}};
  }
  // Runs over the mails and looks at what holds after every run. Answers the boxes, of notes what
  // their senders have written.
  Lines run(const std::vector<ScriptedMailItem>& mails, bool pop = true) {
    windows.boxes.clear();
    mail.calls.clear();
    mail.mailbox = mail.folders["Inbox"] = mails;
    click(pop ? form.mnuFileInstallFromEmailPOP : form.mnuFileInstallFromEmailOLK);
    expectIdle();
    EXPECT_TRUE(mail.closed);
    EXPECT_EQ(drive.tree("C:\\Temp\\SKVInstallTemp"), Lines{});
    EXPECT_EQ(app.PendingZIP, "");
    EXPECT_FALSE(form.lblStatus.showsProgress);
    EXPECT_TRUE(windows.answers.empty());
    Lines texts = windows.boxTexts();
    for (std::string& text : texts)
      if (const auto head = text.find("\r\n\r\n"); text.starts_with("Subject: "))
        text.erase(0, head == std::string::npos ? head : head + 4);
    return texts;
  }
  // The attachments of the mails that are left on the server.
  Lines left() const {
    Lines names;
    for (const auto& item : mail.mailbox)
      names.push_back(item.attachments.empty() ? "" : item.attachments.back().name);
    return names;
  }
  bool hangarHas(const std::string& name) const {
    return drive.exists("C:\\Hangar\\aircraft\\" + name + "\\aircraft.cfg");
  }
  std::size_t called(const std::string& beginning) const {
    return std::ranges::count_if(mail.calls,
                                 [&](const auto& call) { return call.starts_with(beginning); });
  }
};

TEST_F(MailInstallTest, EachKindOfMailHasItsView) {
  auto two = aircraft("b.zip");
  two.attachments.insert(two.attachments.begin(), {"no.zip", "not this one"});
  two.attachments.push_back({"card.vcf", "v"});
  const std::vector<ScriptedMailItem> mails{
      {"hello", "h", {{"x.zip", plane}}}, aircraft("a.ZIP"), scenery("Rome.zip"), two};
  EXPECT_EQ(run(mails), (Lines{"note of a.ZIP", "note of b.zip"}));
  EXPECT_EQ(left(), (Lines{"x.zip", "Rome.zip"}));
  EXPECT_TRUE(hangarHas("a") && hangarHas("b"));
  EXPECT_EQ(called("FetchFullMail"), 2U);
  EXPECT_EQ(form.lblStatus.caption, "");
  open();
  EXPECT_EQ(run(mails), Lines{"note of Rome.zip"});
  EXPECT_EQ(left(), (Lines{"x.zip", "a.ZIP", "card.vcf"}));
  EXPECT_EQ(listed(), Lines{"Rome|ADDON SCENERY\\Rome"});
  app.SceneryLib.clear();
  run(mails);
  expectTold("No folder is set for the scenery library.");
  EXPECT_EQ(called(""), 0U);
}

TEST_F(MailInstallTest, TheSecondRunFindsTheAddonInstalled) {
  EXPECT_EQ(run({}), Lines{"No Mails in POP3 Account!"});
  EXPECT_EQ(run({}, false), Lines{"There is no mail that brings an aircraft."});
  EXPECT_EQ(run({aircraft("a.zip")}, false), Lines{"note of a.zip"});
  EXPECT_TRUE(hangarHas("a"));
  EXPECT_EQ(run({aircraft("A.zip"), aircraft("b.zip")}, false),
            (Lines{"note of A.zip", already, "note of b.zip"}));
  EXPECT_EQ(called("DeleteMail"), 0U);
  EXPECT_EQ(run({aircraft("a.zip"), aircraft("c.zip")}),
            (Lines{"note of a.zip", already, "note of c.zip"}));
  EXPECT_EQ(left(), Lines{});

  // What a run that was cut short has left: an add-on without a row, whose mail is not missed.
  click(form.mnuViewFSAircraft);
  const std::string list = "C:\\Hangar\\SKV_AC.lst", rows = drive.read(list);
  drive.write(list, "");
  files.failWhen("replaceFile", list, err::diskFull);
  run({aircraft("a.zip")});
  EXPECT_EQ(left(), Lines{"a.zip"});
  files.heal();
  run({aircraft("a.zip")});
  EXPECT_EQ(left(), Lines{});
  EXPECT_TRUE(holds(rows, drive.read(list)) && !drive.read(list).empty());
}

TEST_F(MailInstallTest, OnlyAnAddonThatStandsLetsItsMailGo) {
  const std::string folder = "C:\\Hangar\\aircraft\\a";
  for (const std::string rest : {"", "\\readme.txt", "\\model\\a.mdl"}) {
    SCOPED_TRACE(rest);
    drive.clear("C:\\Hangar");
    drive.clear(folder);
    if (!rest.empty()) drive.write(folder + rest, "the user's");
    mnuViewHangar_Click(app);
    if (!rest.empty()) {
      run({aircraft("a.zip")});
      EXPECT_EQ(left(), Lines{"a.zip"});
      EXPECT_EQ(drive.filesIn(folder), Lines{rest.substr(1)});
      windows.answers = {yes};
    }
    run({aircraft("a.zip")});
    EXPECT_EQ(left(), Lines{});
    EXPECT_TRUE(hangarHas("a"));
    EXPECT_EQ(form.lstAircraft.count(), 1);
    EXPECT_TRUE(rest.empty() || drive.read(folder + " (2)" + rest) == "the user's");
  }
  // The disk does not tell, another add-on stands further down, or a file has the name.
  files.failWhen("attributes", folder + "\\aircraft.cfg", err::deviceIo);
  run({aircraft("a.zip")});
  EXPECT_EQ(left(), Lines{"a.zip"});
  files.heal();
  drive.clear(folder);
  drive.write(folder + "\\old\\aircraft.cfg", plane);
  drive.write("C:\\Hangar\\aircraft\\f", "a file of somebody's");
  run({aircraft("a.zip"), aircraft("f.zip"), aircraft("g.zip")});
  EXPECT_EQ(left(), (Lines{"a.zip", "f.zip"}));
}

TEST_F(MailInstallTest, AMailThatBringsAnotherVersionIsAskedAbout) {
  const auto newer = aircraft(
      "a.zip", sample::zipBytes({{"Aircraft/aircraft.cfg", "[fltsim.0]\r\nTitle=The Plane\r\n"},
                                 {"Aircraft/model/a.mdl", "n"},
                                 {"Aircraft/.DS_Store", "d"}}));
  for (const auto& other : {newer, aircraft("a.zip", "no archive")}) {
    drive.clear("C:\\Hangar");
    mnuViewHangar_Click(app);
    run({aircraft("a.zip")});
    run({other}, false);
    EXPECT_TRUE(holds(windows.boxes.at(1).text, "\"a\" is installed already, but \"a.zip\""));
    EXPECT_EQ(windows.boxes.size(), 2U);
    run({other});
    EXPECT_EQ(windows.boxes.at(1).defaultButton, ui::DefaultButton::no);
    EXPECT_EQ(left(), Lines{"a.zip"});
    windows.answers = {yes};
    run({other});
    EXPECT_EQ(left(), Lines{});
    EXPECT_EQ(drive.read("C:\\Hangar\\aircraft\\a\\model\\a.mdl"), "m");
  }
  // A file that is gone, one that cannot be read, and an add-on that is thinned out.
  drive.remove("C:\\Hangar\\aircraft\\a\\model\\a.mdl");
  run({aircraft("a.zip")});
  EXPECT_EQ(windows.boxes.at(1).details, "model\\a.mdl\r\n");
  EXPECT_EQ(left(), Lines{"a.zip"});
  files.failWhen("list", "C:\\Hangar\\aircraft\\a", err::deviceIo);
  run({aircraft("a.zip")});
  files.heal();
  EXPECT_EQ(left(), Lines{"a.zip"});
  drive.write("C:\\Packs\\a.zip", plane);
  EXPECT_EQ(run({aircraft("a.zip")}), (Lines{"note of a.zip", already}));
  EXPECT_EQ(left(), Lines{});
}

TEST_F(MailInstallTest, TheNoteSaysWhatComesAndAsks) {
  windows.usual["Install"] = no;
  auto item = aircraft("a.zip");
  item.sender = "Anna Berg <anna@example.org>";
  run({item});
  const std::string head =
      "From: Anna Berg <anna@example.org>\r\nSubject: Re: /FSSkyvaultPack/AC/a.zip\r\n"
      "File: a.zip (about 1 KB)\r\n";
  EXPECT_EQ(windows.boxTexts(), Lines{head + "\r\nnote of a.zip"});
  EXPECT_EQ(windows.boxes[0].no, "Skip");
  EXPECT_TRUE(left() == Lines{"a.zip"} && !hangarHas("a"));
  const std::string address = " <who@example.org>";
  item.sender = "Anna <anna@example.org> " + std::string(300, '-') + address;
  run({item});
  EXPECT_TRUE(holds(windows.boxes.at(0).text, address)) << "a long name must not hide it";
  item.sender = "Anna Berg <anna@example.org>";
  item.body = "\r\n \n";
  windows.usual["Install"] = yes;
  run({item});
  EXPECT_EQ(windows.boxTexts(), Lines{head});
  EXPECT_TRUE(hangarHas("a"));

  const std::string none = "There is no mail that brings an aircraft.";
  EXPECT_EQ(run({{"hello", "h"}}), Lines{none});
  EXPECT_EQ(run({scenery("Rome.zip")}),
            Lines{none + "\r\n\r\nMails that bring a scenery: 1. View, Scenery Manager is the "
                         "place to install them."});
  mail.fetchedSubject = "private";
  EXPECT_EQ(run({aircraft("b.zip")}).size(), 1U);
  EXPECT_TRUE(left() == Lines{"b.zip"} && !hangarHas("b")) << "it is another mail by now";
  mail.fetchedSubject.clear();

  run({aircraft("Самолёт.zip")});
  EXPECT_EQ(run({aircraft("Самолёт.zip")}), (Lines{"note of Самолёт.zip", already}));
}

TEST_F(MailInstallTest, AMailThatIsNoGoodDoesNotKeepTheOthersFromTheirTurn) {
  std::vector<ScriptedMailItem> mails{{"/FSSkyvaultPack/AC/none", "note"}};
  Lines told{"note", noneFound}, names{""};
  const std::string tooLong = std::string(252, 'p') + ".zip", farTooLong = tooLong + ".zip";
  for (const std::string& name : std::initializer_list<std::string>{
           "", "plane", "plane.exe", ".zip", "..zip", "...zip", "con.zip", "what?.zip", "a .zip",
           "a..zip", ".hidden.zip", "..\\..\\FS.zip", "/etc/FS.zip", "C:\\FS\\x.zip", "plane.zip ",
           tooLong, farTooLong}) {
    mails.push_back(aircraft(name));
    names.push_back(name);
    told.insert(told.end(), {"note of " + name, noneFound});
  }
  mails.push_back(aircraft("good.zip"));
  told.emplace_back("note of good.zip");
  EXPECT_EQ(run(mails), told);
  EXPECT_EQ(left(), names);
  EXPECT_TRUE(hangarHas("good"));
  told.push_back(already);
  EXPECT_EQ(run(mails, false), told);
}

TEST_F(MailInstallTest, WhatWasNotInstalledStaysUnlessTheUserGivesItUp) {
  const std::string question =
      "\"a.zip\" was not installed.\r\n\r\nDelete its mail from the server all the same?";
  // A broken archive, and a Cancel in the box for the name.
  for (const bool broken : {true, false}) {
    const auto bad = aircraft("a.zip", broken ? sample::zipBytes({{"read.me", ""}}) : plane);
    const auto told = [&](const Lines& rest) {
      Lines texts{"note of a.zip"};
      if (broken) texts.emplace_back("No Aircraft.cfg found!");
      texts.insert(texts.end(), rest.begin(), rest.end());
      return texts;
    };
    const auto attempt = [&](bool pop) {
      if (!broken) windows.inputs = {std::nullopt};
      return run({bad, scenery("x.zip")}, pop);
    };
    EXPECT_EQ(attempt(false), told({}));
    EXPECT_EQ(attempt(true), told({question}));
    EXPECT_EQ(windows.boxes.back().defaultButton, ui::DefaultButton::no);
    EXPECT_EQ(left(), (Lines{"a.zip", "x.zip"}));
    EXPECT_EQ(drive.filesIn("C:\\Temp"), Lines{});

    windows.answers = {yes};
    EXPECT_EQ(attempt(true), told({question, "The archive is kept as \"C:\\Temp\\a.zip\"."}));
    EXPECT_EQ(left(), Lines{"x.zip"});
    EXPECT_EQ(drive.read("C:\\Temp\\a.zip"), bad.attachments[0].content);
    drive.remove("C:\\Temp\\a.zip");
  }
  files.failWhen("rename", "C:\\Temp\\SKVInstallTemp\\a.zip", err::deviceIo);
  mail.mailbox = {aircraft("a.zip", "broken")};
  windows.answers = {yes};
  click(form.mnuFileInstallFromEmailPOP);
  EXPECT_EQ(left(), Lines{"a.zip"}) << "the only copy";
}

TEST_F(MailInstallTest, AFailureEndsTheRunAndLosesNothing) {
  const auto fault = Outcome::withText(err::mail, "what the server said");
  const auto full = Outcome::failure(err::diskFull);
  const struct {
    std::string operation;
    int call;
    Outcome outcome;
    Lines left;
    std::string status;
    bool goesOn = false;
  } cases[] = {
      {"MailboxCount", 1, fault, {"a.zip", "b.zip"}, "Checking POP3 Emails..."},
      {"FetchHeaders", 1, fault, {"a.zip", "b.zip"}, "Checking POP3 Emails..."},
      {"MessageAt", 2, fault, {"b.zip"}, ""},
      {"FetchFullMail", 1, fault, {"a.zip", "b.zip"}, "Transferring Email..."},
      {"GetBody", 1, full, {"a.zip", "b.zip"}, "Transferring Email..."},
      {"GetBody", 1, fault, {"a.zip"}, "", true},
      {"AttachmentCount", 1, full, {"a.zip", "b.zip"}, "Transferring Email..."},
      {"AttachmentName", 1, fault, {"a.zip"}, "", true},
      {"SaveAttachment", 1, full, {"a.zip", "b.zip"}, "Saving Attached \"a.zip\"..."},
      {"SaveAttachment", 1, fault, {"a.zip"}, "", true},
      {"DeleteMail", 1, fault, {"a.zip", "b.zip"}, ""},
  };
  for (const auto& [operation, call, outcome, stay, status, goesOn] : cases) {
    SCOPED_TRACE(operation + outcome.description());
    drive.clear("C:\\Hangar");
    mnuViewHangar_Click(app);
    mail.failAt(operation, call, outcome);
    const Lines told = run({aircraft("a.zip"), aircraft("b.zip")});
    const std::string error =
        "Error #" + std::to_string(outcome.number()) + "\r\n" + outcome.description();
    const auto isIt = [&](const std::string& text) { return text.starts_with(error); };
    EXPECT_EQ(std::ranges::count_if(told, isIt), 1);
    EXPECT_EQ(told.back().ends_with("\r\nThe mail of \"a.zip\" may still be in the mailbox."),
              operation == "DeleteMail");
    EXPECT_EQ(left(), stay);
    EXPECT_EQ(hangarHas("b"), goesOn);
    EXPECT_EQ(form.lblStatus.caption, status);
  }
  // The mail that could not be deleted is not installed again unnoticed.
  EXPECT_EQ(run({aircraft("b.zip"), aircraft("a.zip")}),
            (Lines{"note of b.zip", "note of a.zip", already}));
  files.failWhen("attributes", "C:\\Hangar\\aircraft\\c", err::deviceIo);
  EXPECT_EQ(run({aircraft("c.zip")}).size(), 2U);
  EXPECT_EQ(left(), Lines{"c.zip"});
}

TEST_F(MailInstallTest, StoppingLeavesWhatHasNotBeenDone) {
  bool stopped = true;
  for (int yield = 1; stopped && yield < 60000; yield += 997) {
    SCOPED_TRACE(yield);
    drive.clear("C:\\Hangar");
    mnuViewHangar_Click(app);
    windows.yields = 0;
    windows.onYield = [&] { app.stopRequested = app.stopRequested || windows.yields == yield; };
    run({aircraft("a.zip"), aircraft("b.zip")});
    stopped = windows.yields >= yield;
    // Each is installed or waits for another time, and what waits was not half installed.
    for (const std::string name : {"a", "b"})
      EXPECT_TRUE(std::ranges::count(left(), name + ".zip") == 1 || hangarHas(name)) << name;
    EXPECT_EQ(holds(form.lblStatus.notice.get(), "Stopped"), stopped);
    EXPECT_LE(windows.boxes.size(), 2U) << "nobody is asked about what he has stopped";
  }
  EXPECT_TRUE(!stopped && left().empty());
}

TEST_F(MailInstallTest, AHostWithoutEncryptionIsAskedForOnce) {
  settings.values["Mail/POPHost"] = "Pop.example.com:110";
  mail.unencrypted = {"Pop.example.com:110"};
  const std::vector<ScriptedMailItem> mails{aircraft("a.zip")};
  const Lines told = run(mails);
  ASSERT_EQ(told.size(), 1U);
  EXPECT_TRUE(holds(told[0], "\"pop.example.com\" offers no encryption"));
  EXPECT_EQ(windows.boxes[0].defaultButton, ui::DefaultButton::no);
  EXPECT_TRUE(mail.plainHosts.empty() && called("FetchHeaders") == 0);
  EXPECT_EQ(form.lblStatus.caption, "");
  windows.answers = {yes};
  EXPECT_EQ(run(mails).size(), 2U);
  EXPECT_TRUE(hangarHas("a"));
  mail.plainHosts.clear();  // as in the next run of the program
  EXPECT_EQ(run(mails), (Lines{"note of a.zip", already}));
  settings.values["Mail/POPHost"] = "other.example.com";
  mail.unencrypted = {"other.example.com"};
  EXPECT_EQ(run(mails).size(), 1U) << "another host is another question";
}

TEST_F(MailInstallTest, TheSettingsReachTheEngineAsTheyAre) {
  settings.values["Mail/POPUserName"] = "anna";
  settings.values["Mail/POPPassword"] = "secret";
  for (const auto& [port, told] : {std::pair("", "110"), {"995x", "995"}, {"x", "110"}}) {
    settings.values["Mail/POPPort"] = port;
    run({});
    for (const std::string& call :
         {std::string("SetPopUserName anna"), std::string("SetPopPassword secret"),
          std::string("SetPopHost pop.example.com"), "SetPopPort " + std::string(told),
          std::string("FetchHeaders 10")})
      EXPECT_EQ(std::ranges::count(mail.calls, call), 1) << call;
  }
  EXPECT_EQ(settings.values["Mail/POPPassword"], "") << "moved to the desktop's keeping";
  EXPECT_EQ(secrets.kept["POPPassword"], "secret");
  secrets.runs = false;
  EXPECT_EQ(run({}).size(), 1U);
  EXPECT_EQ(called(""), 0U) << "no login with an empty password";

  settings.values["Mail/OutlookFolder"] = "";
  click(form.mnuFileInstallFromEmailOLK);
  EXPECT_EQ(mail.calls,
            (Lines{"SetFetchLimit 20000", "SetOutlookFilter Subject contains \"/FSSkyvault\"",
                   "FetchOutlookFolder"}));
  EXPECT_TRUE(holds(windows.boxTexts().back(), "There is no \"Outlook Inbox"));
}

TEST_F(MailInstallTest, ALongNoteScrollsAndAMonstrousOneIsCut) {
  auto item = aircraft("a.zip");
  item.body.clear();
  while (item.body.size() < 300000) item.body += "<b>\xC3\xA4</b>";
  run({item});
  const ui::Box& box = windows.boxes.at(0);
  EXPECT_TRUE(box.details.size() < 110000 && box.details.starts_with(item.body.substr(0, 90000)));
  EXPECT_TRUE(isUtf8(box.details));
  EXPECT_TRUE(holds(box.details, "[The message goes on: 300"));
}

}  // namespace skv::test
