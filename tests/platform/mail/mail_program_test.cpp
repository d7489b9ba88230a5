
#include <filesystem>
#include <fstream>
#include <thread>

#include "platform/mail/curl_mail_engine.h"
#include "platform/mail/mail_program.h"
#include "platform/mail/portal_bus.h"
#include "support/disk_fixture.h"
#include "support/environment_variable.h"

namespace skv::test {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

// Programs of its own on the search path, and no bus.
struct MailProgramTest : DiskTest {
  MailProgramTest() {
    engine->Yield = [this] { return ++beats < stopAt; };
    drive.write("C:\\Packs\\Rome.zip", std::string(200'000, 'z'));
    fs::create_directory(programs);
  }
  // Each notes its words, one a line, and what it reads.
  void program(const std::string& name, const std::string& end) {
    std::ofstream(programs + "/" + name) << "#!/bin/sh\nprintf '%s\\n' \"$@\" > " << notes(name)
                                         << "\n/bin/cat > " << notes(name) << ".read\n"
                                         << end << "\n";
    fs::permissions(programs + "/" + name, fs::perms::owner_all);
  }
  std::string notes(const std::string& name) const { return drive.native() + "/" + name; }
  std::string noted(const std::string& name) const { return drive.read("C:\\" + name); }

  Outcome send(const std::string& address = "anna@example.org",
               const std::string& attachment = "Rome.zip", HandOverTimes times = {}) {
    mail.emplace(disk);
    EXPECT_TRUE(mail->SetFromAddress("me@example.org").ok());
    if (Outcome added = mail->AddRecipient(address, address); !added.ok()) return added;
    EXPECT_TRUE(alsoTo.empty() || mail->AddRecipient(alsoTo, alsoTo).ok());
    mail->SetSubject("--attach=/etc/passwd");
    mail->SetBody("Hi,\r\n.\r\nbye' & $(id)\r\n");
    EXPECT_TRUE(mail->AddAttachment("C:\\Packs\\Rome.zip").ok());
    EXPECT_TRUE(mail->SetAttachmentName(0, attachment).ok());
    if (removed) drive.remove("C:\\Packs\\Rome.zip");
    return handToMailProgram(*mail, drive.native() + "/mails", pulse, times);
  }

  const std::string programs = drive.native() + "/programs";
  Variable path{"PATH", programs}, runtime{"XDG_RUNTIME_DIR", ""};
  std::optional<Variable> bus{std::in_place, "DBUS_SESSION_BUS_ADDRESS", ""};
  CurlMailSystem system;
  std::unique_ptr<MailEngine> engine = system.load(disk);
  MailPulse pulse{*engine};
  std::optional<OutgoingMessage> mail;
  int beats = 0, stopAt = 1'000'000;
  std::string alsoTo;    // a second recipient
  bool removed = false;  // the attached file, before the mail is handed over
};

TEST_F(MailProgramTest, HandsTheMailToTheDesktop) {
  program("xdg-email", "exit 0");
  program("sendmail", "exit 0");
  ASSERT_TRUE(send().ok());
  EXPECT_EQ(noted("xdg-email"),
            "--utf8\n--subject\n--attach=/etc/passwd\n--body\nHi,\n.\n"
            "bye' & $(id)\n\n--attach\n" +
                drive.native() + "/Packs/Rome.zip\nanna@example.org\n");
  EXPECT_FALSE(drive.exists("C:\\sendmail"));
  EXPECT_FALSE(drive.exists("C:\\mails\\outbox"));

  // Under another name, which stands for as long as the mail may wait for its sending.
  const std::string old = drive.native() + "/mails/outbox/attachment-old1";
  fs::create_directories(old + "/x");
  fs::last_write_time(old, fs::file_time_type::clock::now() - 24h * 8);
  ASSERT_TRUE(send("anna@example.org", "Rome, Italy's.zip").ok());
  const std::string words = noted("xdg-email");
  const std::size_t at = words.find("\n--attach\n") + 10;
  const std::string standing = words.substr(at, words.find('\n', at) - at);
  EXPECT_TRUE(standing.ends_with("/Rome_ Italy_s.zip")) << standing;
  EXPECT_EQ(fs::file_size(standing), 200'000U);
  EXPECT_FALSE(fs::exists(old));

  // The file goes before the program is called: its bytes are there all the same.
  removed = true;
  ASSERT_TRUE(send("anna@example.org", "Gone.zip").ok());
  const std::string last = noted("xdg-email");
  const std::size_t from = last.find("\n--attach\n") + 10;
  EXPECT_EQ(fs::file_size(last.substr(from, last.find('\n', from) - from)), 200'000U);
  drive.write("C:\\Packs\\Rome.zip", std::string(200'000, 'z'));
  removed = false;

  // It leaves the attachment of an address out.
  program("xdg-mime", "echo sylpheed.desktop");
  program("sylpheed", "exit 0");
  fs::remove(notes("xdg-email"));
  ASSERT_TRUE(send().ok());
  EXPECT_EQ(noted("sylpheed"),
            "--compose\nmailto:anna@example.org?subject=--attach%3D%2Fetc%2Fpasswd&body=Hi%2C%0A."
            "%0Abye%27%20%26%20%24%28id%29%0A\n--attach\n" +
                drive.native() + "/Packs/Rome.zip\n");
  EXPECT_FALSE(fs::exists(notes("xdg-email")));
  program("xdg-mime", "echo other.desktop");

  program("xdg-email", "exec /bin/sleep 3");
  EXPECT_TRUE(send("anna@example.org", "Rome.zip", {200ms, 1s}).ok());  // it is the mail program
  program("xdg-email", "exit 1");
  EXPECT_EQ(send().number(), err::mail);
  EXPECT_FALSE(drive.exists("C:\\sendmail"));
}

TEST_F(MailProgramTest, HandsTheMailToThePortal) {
  program("xdg-email", "exit 0");
  const auto isLeftToOthers = [&] { return fs::remove(notes("xdg-email")); };
  PortalBus portal;
  bus.emplace("DBUS_SESSION_BUS_ADDRESS", portal.address());
  for (const bool first : {false, true}) {
    portal.respondsFirst = first;
    ASSERT_TRUE(send().ok());
  }
  EXPECT_EQ(portal.options, (Lines{"address='anna@example.org'", "subject='--attach=/etc/passwd'",
                                   "body=\"Hi,\\n.\\nbye' & $(id)\\n\""}));
  EXPECT_EQ(portal.attachments, Lines{std::string(200'000, 'z')});
  alsoTo = "bob@example.org";
  ASSERT_TRUE(send().ok());
  EXPECT_EQ(portal.options[0], "addresses=['anna@example.org', 'bob@example.org']");
  EXPECT_FALSE(isLeftToOthers());

  // What it cannot do, others may.
  portal.version = 2;
  EXPECT_TRUE(send().ok());
  alsoTo.clear();
  EXPECT_TRUE(isLeftToOthers());
  for (const auto& [version, refuses, response] :
       {std::tuple(0U, false, 0), std::tuple(3U, true, 0), std::tuple(3U, false, 2)}) {
    portal.version = version;
    portal.refuses = refuses;
    portal.response = response;
    EXPECT_TRUE(send().ok());
    EXPECT_TRUE(isLeftToOthers()) << version << refuses << response;
  }

  // What the user does not want, nobody does.
  portal.response = 1;
  EXPECT_EQ(send().description(), "No mail program was chosen for the mail.");
  portal.response = -1;
  const int before = portal.asked;
  engine->Yield = [&] { return portal.asked == before; };
  EXPECT_EQ(send().number(), err::mail);
  EXPECT_FALSE(isLeftToOthers());
}

TEST_F(MailProgramTest, HandsTheMailToSendmail) {
  for (const char* without : {"", "exit 3", "exit 4"}) {
    if (*without != 0) program("xdg-email", without);
    program("sendmail", "exit 0");
    ASSERT_TRUE(send().ok());
    EXPECT_EQ(noted("sendmail"), "-i\n-fme@example.org\n--\nanna@example.org\n");
    const std::string sent = noted("sendmail.read");
    EXPECT_NE(sent.find("\nTo: \"anna@example.org\" <anna@example.org>\n"), std::string::npos);
    EXPECT_NE(sent.find("\n.\nbye' & $(id)\n"), std::string::npos) << sent.substr(0, 900);
    EXPECT_EQ(sent.find('\r'), std::string::npos);
    EXPECT_GT(sent.size(), 260'000U);
    EXPECT_TRUE(sent.ends_with("--\n"));
    fs::remove(notes("sendmail"));
  }

  EXPECT_EQ(send("-oQ@example.org").number(), err::mail);
  EXPECT_FALSE(drive.exists("C:\\sendmail"));
  program("sendmail", "echo 'no such user' >&2; exit 67");
  const Outcome refused = send();
  EXPECT_EQ(refused.number(), err::mail);
  EXPECT_NE(refused.description().find("no such user"), std::string::npos);

  beats = 0;
  program("sendmail", "/bin/sleep 1.2; echo late > " + notes("late"));
  EXPECT_EQ(send("anna@example.org", "Rome.zip", {1s, 200ms}).number(), err::mail);
  EXPECT_GT(beats, 5);  // the window lives
  stopAt = beats + 8;
  EXPECT_EQ(send().number(), err::cancelled);
  std::this_thread::sleep_for(1300ms);
  EXPECT_FALSE(drive.exists("C:\\late"));  // what was told to have failed is not sent later
}

TEST_F(MailProgramTest, SaysThatThereIsNoMailProgram) {
  if (fs::exists("/usr/sbin/sendmail") || fs::exists("/usr/lib/sendmail"))
    GTEST_SKIP() << "this machine has a sendmail";
  EXPECT_EQ(send().number(), err::mail);
  drive.remove("C:\\Packs\\Rome.zip");
}

}  // namespace skv::test
