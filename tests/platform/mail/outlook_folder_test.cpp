#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <random>

#include "platform/mail/curl_mail_engine.h"
#include "support/disk_fixture.h"
#include "support/environment_variable.h"
#include "support/text.h"

namespace skv::test {

namespace fs = std::filesystem;

constexpr const char* ours = "Subject contains \"/FSSkyvault\"";

std::string mail(const std::string& subject, const std::string& more = {},
                 const std::string& body = "Body\n") {
  return "From - Tue Jul 30 12:00:00 2002\n" + more + "From: a@example.org\nSubject: " + subject +
         "\n\n" + body + "\n";
}

// A home with mail folders, which is the machine's only one.
struct OutlookFolderTest : DiskTest {
  OutlookFolderTest() { engine->SetOutlookFilter(ours); }

  Lines subjects(const std::string& folder) {
    const auto fetched = engine->FetchOutlookFolder(folder);
    failure = fetched.outcome().description();
    if (!fetched.ok()) return {"error " + std::to_string(fetched.outcome().number())};
    Lines found;
    for (int at = 0; at < fetched.value()->MessageCount(); ++at)
      found.push_back(fetched.value()->MessageAt(at).value()->GetSubject());
    return found;
  }
  void write(const std::string& path, const std::string& content) {
    fs::create_directories(fs::path(home + path).parent_path());
    std::ofstream(home + path, std::ios::binary) << content;
  }
  void makeMaildir(const std::string& path) {
    for (const char* sub : {"/cur", "/new", "/tmp"}) fs::create_directories(home + path + sub);
  }
  std::string body(const std::string& folder, int index = 0) {
    const auto fetched = engine->FetchOutlookFolder(folder);
    if (!fetched.ok() || index >= fetched.value()->MessageCount()) return "none";
    return fetched.value()->MessageAt(index).value()->GetBody().valueOr("error");
  }

  const std::string home = drive.native() + "/home";
  Variable homeVariable{"HOME", home};
  Variable data{"XDG_DATA_HOME", ""}, config{"XDG_CONFIG_HOME", ""}, spool{"MAIL", home + "/spool"};
  CurlMailSystem system{MailOptions{{}, drive.native() + "/work", {}}};
  std::unique_ptr<MailEngine> engine = system.load(files);
  std::string failure;
};

TEST_F(OutlookFolderTest, FindsTheMailsOfAnMbox) {
  const std::string a = "/FSSkyvaultPack/AC/a.zip", b = "/FSSkyvaultPack/SC/b.zip";
  struct Case {
    const char* what;
    std::string content;
    Lines found;
  };
  const std::string noise = mail("Hello", {}, "From here on\n\nFrom the tower, a note\nx\n");
  for (const Case& at : std::initializer_list<Case>{
           {"empty", "", {}},
           {"others", noise, {}},
           {"two", mail(a) + noise + mail(b), {a, b}},
           {"empty lines before", "\n\n" + mail(a) + mail(b), {a, b}},
           {"no end", mail(a) + mail(b).substr(0, mail(b).size() - 3), {a, b}},
           {"without text", "From x\nSubject: " + a + "\n\nFrom x\nSubject: " + b + "\n\n", {a, b}},
           {"not after text", mail("x", {}, "text\nFrom x\nSubject: " + a + "\n"), {}},
           {"expunged",
            mail(a, "X-Mozilla-Status: 0009\n") + mail(b, "X-Mozilla-Status: 0001\n"),
            {b}},
           {"gone on the server", mail(a, "X-Mozilla-Status2: 00200000\n"), {}},
           {"deleted by others", mail(a, "X-Status: AD\n") + mail(b, "Status: RO\n"), {b}},
           {"a note in the text", mail(a, {}, "X-Mozilla-Status: 0008\n"), {a}},
           {"folded", mail("=?utf-8?q?=2FFSSky?=\n =?utf-8?q?vaultPack/AC/a.zip?="), {a}},
           {"in base64",
            mail("=?utf-8?B?L0ZTU2t5dmF1bHRQYWNrL0FDL8OELnppcA==?="),
            {"/FSSkyvaultPack/AC/\u00c4.zip"}},
           {"others in words", mail("=?utf-8?q?Hello?="), {}},
           {"in other letters", mail("/fsskyvaultPack/AC/a.zip"), {}},
           {"wrong length", mail(a, "Content-Length: 999999\n") + mail(b), {a, b}},
           {"long headers",
            mail(a, "X-Long: " + std::string(100'000, 'x') + "\n") + mail(b),
            {a, b}},
           {"across a window",
            mail("x", {}, std::string((1U << 20U) - 120, 'x') + "\n") + mail(a) +
                mail("x", {}, std::string(1U << 20U, '\n')) + mail(b),
            {a, b}}})
    for (const bool crLf : {false, true}) {
      write("/box", crLf ? withCrLf(at.content) : at.content);
      EXPECT_EQ(subjects(home + "/box"), at.found) << at.what << crLf;
    }
  engine->SetFetchLimit(1);
  write("/box", mail(a) + mail(b));
  EXPECT_EQ(subjects(home + "/box"), Lines{a});
  engine->SetOutlookFilter("From contains x");
  EXPECT_EQ(subjects(home + "/box"), Lines{"error 31100"});
}

TEST_F(OutlookFolderTest, ReadsAMailAsItWasSent) {
  const std::string zip = "UEsDBA==";
  const std::string attached =
      "--x\nContent-Type: text/plain\n\n>From the hangar\n>>From there\n> quoted\n\n--x\n"
      "Content-Type: application/zip; name=a.zip\nContent-Transfer-Encoding: base64\n\n" +
      zip + "\n--x--\n";
  const std::string box =
      mail("x") + mail("/FSSkyvault", "Content-Type: multipart/mixed; boundary=x\n", attached) +
      mail("x");
  for (const bool crLf : {false, true}) {
    write("/box", crLf ? withCrLf(box) : box);
    struct stat before {
    }, after{};
    ASSERT_EQ(::stat((home + "/box").c_str(), &before), 0);
    const auto fetched = engine->FetchOutlookFolder(home + "/box");
    ASSERT_TRUE(fetched.ok());
    const auto found = fetched.value()->MessageAt(0);
    ASSERT_TRUE(found.ok());
    EXPECT_EQ(fetched.value()->MessageAt(1).outcome().number(), err::invalidProcedureCall);
    EXPECT_EQ(found.value()->GetBody().value(), "From the hangar\n>From there\n> quoted\n");
    EXPECT_EQ(found.value()->AttachmentName(0).value(), "a.zip");
    EXPECT_TRUE(found.value()->SaveAttachment(0, "C:\\").ok());
    EXPECT_EQ(drive.read("C:\\a.zip"), "PK\x03\x04");
    ASSERT_EQ(::stat((home + "/box").c_str(), &after), 0);
    EXPECT_EQ(before.st_atim.tv_nsec, after.st_atim.tv_nsec);
    EXPECT_EQ(before.st_ctim.tv_nsec, after.st_ctim.tv_nsec);
  }
  write("/box", withCrLf(mail("/FSSkyvault") + mail("x")));
  EXPECT_EQ(body(home + "/box"), "Body\n");
}

// A mail program marks a mail as read, rewrites the file, or takes the mail away.
TEST_F(OutlookFolderTest, NoticesWhatTheMailProgramDoesMeanwhile) {
  const std::string first = mail("x"),
                    second = mail("/FSSkyvault", "X-Mozilla-Status: 0000\n", "Two\n");
  const std::string seen = mail("/FSSkyvault", "X-Mozilla-Status: 0001\n", "Two\n");
  const std::string expunged = mail("/FSSkyvault", "X-Mozilla-Status: 0008\n", "Two\n");
  struct Case {
    const char* what;
    std::string now;
    const char* body;
  };
  for (const Case& at : std::initializer_list<Case>{
           {"seen", first + seen, "Two\n"},
           {"deleted", first + expunged, "gone"},
           {"grown", first + second + first, "Two\n"},
           {"moved", second, "gone"},
           {"cut", (first + second).substr(0, first.size() + second.size() - 4), "gone"},
           {"emptied", "", "gone"}}) {
    write("/box", first + second);
    const auto fetched = engine->FetchOutlookFolder(home + "/box");
    ASSERT_TRUE(fetched.ok());
    write("/box", at.now);
    const auto text = fetched.value()->MessageAt(0).value()->GetBody();
    EXPECT_EQ(text.ok() ? text.value() : "gone", at.body) << at.what;
    EXPECT_TRUE(text.ok() || text.outcome().number() == err::mail) << at.what;
  }

  // While it is searched.
  const std::string big = mail("/FSSkyvault") + mail("x", {}, std::string(4U << 20U, 'x') + "\n");
  for (const auto& [now, count] : std::initializer_list<std::pair<std::string, int>>{
           {big + mail("/FSSkyvault"), 1}, {mail("/FSSkyvault"), 1}, {"", 1}}) {
    write("/box", big);
    engine->Yield = [&, rewritten = false]() mutable {
      if (!rewritten) write("/box", now);
      return rewritten = true;
    };
    EXPECT_EQ(static_cast<int>(subjects(home + "/box").size()), count);
  }
  write("/box", big + big);
  engine->Yield = [] { return false; };
  EXPECT_EQ(subjects(home + "/box"), Lines{"error 32755"});
}

TEST_F(OutlookFolderTest, ReadsAMaildir) {
  makeMaildir("/Maildir");
  const std::string note = mail("/FSSkyvault b").substr(32);
  write("/Maildir/new/99.b", note);
  write("/Maildir/cur/100.a:2,S", mail("/FSSkyvault a").substr(32));
  write("/Maildir/cur/101.t:2,ST", mail("/FSSkyvault t").substr(32));
  write("/Maildir/cur/102.x:2,S", "X-Mozilla-Status: 0008\nSubject: /FSSkyvault x\n\n");
  write("/Maildir/cur/.hidden", note);
  write("/Maildir/tmp/103.c", note);
  fs::create_directory(home + "/Maildir/cur/104.d");
  EXPECT_EQ(subjects("Maildir/Inbox"), (Lines{"/FSSkyvault b", "/FSSkyvault a"}));

  const auto fetched = engine->FetchOutlookFolder("Inbox");
  ASSERT_TRUE(fetched.ok());
  fs::rename(home + "/Maildir/new/99.b", home + "/Maildir/cur/99.b:2,S");
  fs::remove(home + "/Maildir/cur/100.a:2,S");
  EXPECT_EQ(fetched.value()->MessageAt(0).value()->GetBody().value(), "Body\n\n");
  EXPECT_EQ(fetched.value()->MessageAt(1).value()->GetBody().outcome().number(), err::mail);
  EXPECT_TRUE(fs::exists(home + "/Maildir/cur/99.b:2,S"));
}

TEST_F(OutlookFolderTest, KnowsTheFoldersOfTheMailPrograms) {
  const std::string one = mail("/FSSkyvault 1"), two = mail("/FSSkyvault 2"),
                    three = mail("/FSSkyvault 3");
  const std::string bird = "/.thunderbird/ab.default";
  write("/.thunderbird/profiles.ini",
        "[Install1]\nDefault=ab.default\n[Profile0]\nName=x\nIsRelative=1\r\nPath=ab.default\n"
        "[Profile1]\nIsRelative=0\nPath=" +
            home + "/other\n");
  write(bird + "/prefs.js",
        "user_pref(\"mail.server.server1.name\", \"anna\\u00e9@example.org\");\n"
        "user_pref(\"mail.server.server1.directory-rel\", \"[ProfD]Mail/pop.example.org\");\n");
  write(bird + "/Mail/pop.example.org/Inbox", one);
  write(bird + "/Mail/pop.example.org/Inbox.msf", "x");
  write(bird + "/Mail/pop.example.org/popstate.dat", "");
  write(bird + "/Mail/pop.example.org/Inbox.sbd/Friends", two);
  write(bird + "/Mail/pop.example.org/Inbox.sbd/Friends.sbd/Entw&APw-rfe", three);
  write(bird + "/Mail/Local Folders/Inbox", "");
  write(bird + "/Mail/Local Folders/R&D", two);
  makeMaildir(bird + "/ImapMail/imap.example.org/Stored");
  write("/other/Mail/Local Folders/Trash", "");
  makeMaildir("/.local/share/evolution/mail/local");
  makeMaildir("/.local/share/evolution/mail/local/.Add_2Eons.Sky");
  write("/.local/share/evolution/mail/local/.Add_2Eons.Sky/cur/1", two.substr(32));
  makeMaildir("/.local/share/local-mail/inbox");
  makeMaildir("/.local/share/local-mail/.inbox.directory/Sub");
  fs::create_directory_symlink(home, home + "/Mail");
  write("/notes.txt", "From nobody\n");

  const Lines listed = {"Evolution/Add.ons/Sky",
                        "Evolution/Inbox",
                        "KMail/inbox",
                        "KMail/inbox/Sub",
                        "Mail/notes.txt",
                        "Thunderbird/annaé@example.org/Inbox",
                        "Thunderbird/annaé@example.org/Inbox/Friends",
                        "Thunderbird/annaé@example.org/Inbox/Friends/Entwürfe",
                        "Thunderbird/imap.example.org/Stored",
                        "Thunderbird/Local Folders (2)/Trash",
                        "Thunderbird/Local Folders/Inbox",
                        "Thunderbird/Local Folders/R&D"};
  EXPECT_EQ(engine->OutlookFolders(), listed);
  for (const std::string& folder : listed)
    EXPECT_NE(subjects(folder), Lines{"error 31100"}) << folder;

  const Lines none = {"error 31100"};
  for (const auto& [folder, found] : std::initializer_list<std::pair<std::string, Lines>>{
           {"Thunderbird/annaé@example.org/Inbox", {"/FSSkyvault 1"}},
           {"ANNAÉ@example.org/inBOX", {"/FSSkyvault 1"}},
           {"Inbox", {"/FSSkyvault 1"}},  // the others are empty
           {"Inbox/Friends", {"/FSSkyvault 2"}},
           {"friends", {"/FSSkyvault 2"}},
           {"pop.example.org/Inbox/Friends/Entw&APw-rfe", {"/FSSkyvault 3"}},
           {"Add.ons/Sky", {"/FSSkyvault 2"}},
           {home + bird + "/Mail/pop.example.org/Inbox", {"/FSSkyvault 1"}},
           {"~/.thunderbird/ab.default/Mail/pop.example.org/Inbox", {"/FSSkyvault 1"}},
           {"c:\\HOME\\.thunderbird\\ab.default\\mail\\pop.example.org\\inbox", {"/FSSkyvault 1"}},
           {"C:\\home\\.local\\share\\evolution\\mail\\local\\.Add_2Eons.Sky\\",
            {"/FSSkyvault 2"}}})
    EXPECT_EQ(subjects(folder), found) << folder << failure;
  for (const std::string& folder :
       Lines{"", "/", "..", "/friends/", "No/Such", "Thunderbird/../../box", "C:\\no\\such",
             "Local Folders/../pop.example.org/Inbox", home + "/.thunderbird",
             home + "/.thunderbird/profiles.ini"})
    EXPECT_EQ(subjects(folder), none) << folder;

  write(bird + "/Mail/Local Folders/Inbox", two);
  EXPECT_EQ(subjects("Inbox"), none);
  EXPECT_NE(failure.find("Thunderbird/Local Folders/Inbox"), std::string::npos) << failure;
  ASSERT_EQ(::mkfifo((home + "/pipe").c_str(), 0600), 0);
  EXPECT_EQ(subjects(home + "/pipe"), none);
}

// Whatever the bytes are: no crash, and what is told can be asked for.
TEST_F(OutlookFolderTest, SurvivesCutAndRandomFiles) {
  const std::string box =
      mail("/FSSkyvault", "X-Mozilla-Status: 0001\n", ">From\n>>From x\n\nFrom\n") +
      mail("=?utf-8?q?/FSSkyvault?=\n x");
  for (std::size_t cut = 0; cut < box.size(); ++cut) {
    write("/box", withCrLf(box).substr(0, cut * 2));
    body(home + "/box", 1);
    write("/box", box.substr(0, cut) + box.substr(box.size() - cut));
    EXPECT_NE(body(home + "/box"), "error") << cut;
  }
  std::minstd_rand random(7);
  const Lines pieces = {"\n",        "From ",        "\r", "Subject: /FSSkyvault\n", "x",
                        ">",         "\n\nFrom a\n", ":",  std::string(1, '\0'),     "\xFF",
                        "=?utf-8?b?"};
  engine->SetOutlookFilter("");
  for (int run = 0; run < 300; ++run) {
    std::string text = "From x\n";
    for (auto count = random() % 60; count > 0; --count) text += pieces[random() % pieces.size()];
    write("/box", text);
    for (int index = 0; index < 3; ++index) EXPECT_NE(body(home + "/box", index), "error") << text;
  }
}

}  // namespace skv::test
