#include <filesystem>

#include "platform/mail/engine_fixture.h"

namespace skv::test {

TEST_F(EngineTest, MovesAPackageThroughRealServers) {
  MailServers servers;
  std::string package;
  for (unsigned at = 0; at < 300'000; ++at) package += static_cast<char>(at * at >> 3U);
  drive.write("C:\\Packs\\Rome.zip", package);
  auto engine = load(servers.caFile(), servers.tlsPorts());
  int beats = 0, percent = 0;
  engine->Yield = [&] { return ++beats > 0; };
  engine->Progress = [&](int now) { percent = now; };

  const auto mail = engine->NewMessage();
  ASSERT_TRUE(mail->AddRecipient("bob@example.com", "bob@example.com").ok());
  ASSERT_TRUE(mail->SetFromAddress("ann@example.com").ok());
  mail->SetFromName("Ann Other");
  mail->SetSubject("/FSSkyvaultPack/SC/Rome.zip");
  mail->SetBody(".\r\nHello\r\n..two\r\n");
  EXPECT_EQ(mail->AddAttachment("C:\\Packs\\Rome.zip").valueOr(""), "application/zip");
  engine->SetSmtpHost(servers.smtp());
  EXPECT_TRUE(holds(engine->SendMail(*mail).description(), "refuses"));  // wants a login
  engine->SetSmtpUserName("pilot");
  engine->SetSmtpPassword("wrong word");
  const Outcome denied = engine->SendMail(*mail);
  EXPECT_TRUE(holds(denied.description(), "refuses the login"));
  EXPECT_EQ(denied.description().find("wrong word"), std::string::npos);
  engine->SetSmtpPassword("secret word");
  for (const std::string& host : {servers.smtp(), servers.smtps()}) {
    engine->SetSmtpHost(host);
    const Outcome sent = engine->SendMail(*mail);
    EXPECT_TRUE(sent.ok()) << sent.description();
  }
  EXPECT_GT(beats, 0);
  EXPECT_EQ(percent, 99) << "100 is said by the return";
  const auto letters = servers.sent();
  ASSERT_EQ(letters.size(), 2U);
  const std::size_t gap = letters[0].find("\r\n");
  EXPECT_EQ(letters[0].substr(0, gap), "[127.0.0.1] ann@example.com bob@example.com");

  ASSERT_TRUE(mail->AddRecipient("", "nobody@example.com").ok());
  EXPECT_TRUE(holds(engine->SendMail(*mail).description(), "There is no such pilot"));
  EXPECT_EQ(servers.sent().size(), 2U);

  servers.putIntoMailbox(mailOf("first"));
  servers.putIntoMailbox(letters[0].substr(gap + 2));
  servers.putIntoMailbox(mailOf("last"));
  engine->SetPopUserName("pilot");
  engine->SetPopPassword("wrong word");
  engine->SetPopHost(servers.pop3());
  EXPECT_TRUE(holds(engine->MailboxCount().outcome().description(), "refuses the login"));
  engine->SetPopPassword("secret word");
  ASSERT_EQ(engine->MailboxCount().valueOr(-1), 3)
      << engine->MailboxCount().outcome().description();
  const auto heads = engine->FetchHeaders(10);
  ASSERT_EQ(subjects(*heads.value()),
            (std::vector<std::string>{"first", "/FSSkyvaultPack/SC/Rome.zip", "last"}));
  const MailMessage& head = *heads.value()->MessageAt(1).value();

  ASSERT_TRUE(engine->DeleteMail(*heads.value()->MessageAt(0).value()).ok());
  EXPECT_EQ(servers.mailsInMailbox(), 2);  // gone already, and the numbers have changed
  const auto full = engine->FetchFullMail(head);
  ASSERT_TRUE(full.ok()) << full.outcome().description();
  EXPECT_EQ(full.value()->GetBody().valueOr(""), ".\nHello\n..two\n");
  ASSERT_EQ(full.value()->AttachmentCount().valueOr(0), 1);
  EXPECT_EQ(full.value()->AttachmentName(0).valueOr(""), "Rome.zip");
  ASSERT_TRUE(disk.makeFolder("C:\\Temp").ok());
  files.failWhen("write", "", err::diskFull);
  EXPECT_EQ(full.value()->SaveAttachment(0, "C:\\Temp").number(), err::diskFull);
  files.heal();
  EXPECT_TRUE(drive.filesIn("C:\\Temp").empty());
  ASSERT_TRUE(full.value()->SaveAttachment(0, "C:\\Temp").ok());
  EXPECT_TRUE(drive.read("C:\\Temp\\Rome.zip") == package);
  EXPECT_TRUE(std::filesystem::is_empty(drive.native() + "/work"));

  ASSERT_TRUE(engine->DeleteMail(head).ok());
  EXPECT_TRUE(engine->DeleteMail(head).ok());  // is gone, as it should be
  EXPECT_TRUE(holds(engine->FetchFullMail(head).outcome().description(), "no longer"));
  engine->SetPopHost(servers.pop3s());
  EXPECT_EQ(engine->MailboxCount().valueOr(-1), 1);

  // Without the certificate in the store the server is anybody.
  engine = load();
  engine->SetPopHost(servers.pop3());
  engine->SetPopUserName("pilot");
  engine->SetPopPassword("secret word");
  EXPECT_TRUE(holds(engine->MailboxCount().outcome().description(), "cannot prove"));
}

TEST_F(EngineTest, GivesUpOnServersThatMisbehave) {
  const std::string all = [] {
    std::string bytes;
    for (int byte = 255; byte >= 0; --byte) bytes += static_cast<char>(byte);
    return bytes;
  }();
  const std::string flood(std::size_t{32} << 20U, 'x');
  std::string lines = "+OK\r\n";
  while (lines.size() < (std::size_t{80} << 20U)) lines += "X-Header: and another one\r\n";
  struct {
    const char *on, *told;
    std::optional<std::string> answer;
  } const cases[] = {
      {"", "does not answer", ""},
      {"", "", {}},
      {"", "", all + "\r\n"},
      {"", "", "+OK " + flood},
      {"PASS", "refuses the login: no * for you", "-ERR no secret word for you\r\n"},
      {"STAT", "does not answer", ""},
      {"STAT", "does not answer", "~+OK 1 " + std::string(50, '0')},
      {"UIDL", "does not answer", "~+OK\r\n1 " + std::string(50, 'x')},
      {"STAT", "has broken off", {}},
      {"STAT", "no POP3", all + "\r\n"},
      {"STAT", "without an end", "+OK " + flood},
      {"STAT", "counts what cannot be", "+OK 99999999999 1\r\n"},
      {"UIDL", "does not answer", "+OK\r\n1 a\r\n"},
      {"TOP ", "does not answer", lines},
      {"TOP ", "does not answer", "+OK\r\nSubject: x\r\n"},
  };
  for (const auto& [on, told, answer] : cases) {
    SCOPED_TRACE(std::string(on) + " " + told);
    Mailbox box{{mailOf("a")}, true, true, "", 0};
    RudeServer server([&, on = std::string(on), answer = answer](const std::string& line) {
      return line.substr(0, 4) == on ? answer : box(line);
    });
    // A flood may have to wait for the processor: it is not to be taken for silence.
    auto engine = loadFor(server, std::string(told) == "without an end" ? 20'000ms : 400ms);
    const Outcome failed = engine->FetchHeaders(10).outcome();
    EXPECT_EQ(failed.number(), err::mail);
    EXPECT_TRUE(holds(failed.description(), told));
    EXPECT_TRUE(holds(failed.description(), server.host()));
  }
}

TEST_F(EngineTest, EndsWhenItsCallerDoes) {
  RudeServer silent([](const std::string&) { return ""; });
  auto engine = loadFor(silent);
  int beats = 0;
  Outcome inside;
  engine->Yield = [&] {
    inside = engine->MailboxCount().outcome();
    return ++beats < 3;
  };
  EXPECT_EQ(engine->MailboxCount().outcome().number(), err::cancelled);
  EXPECT_TRUE(holds(inside.description(), "under way"));
}

TEST_F(EngineTest, TellsNothingToServersElsewhereThatDoNotEncrypt) {
  const std::string address = otherAddress();
  if (address.empty()) GTEST_SKIP() << "a machine without a network";
  Mailbox box{{mailOf("a")}, true, true, "", 0};
  RudeServer pop([&](const std::string& line) { return box(line); }, address);
  RudeServer smtp(
      [](const std::string& line) {
        return line == "DATA"             ? "354 go on\r\n"
               : line.starts_with("EHLO") ? "250 hello\r\n"
                                          : "250 OK\r\n";
      },
      address);
  auto engine = loadFor(pop);
  engine->SetSmtpHost(smtp.host());
  const auto mail = engine->NewMessage();
  ASSERT_TRUE(mail->AddRecipient("", "bob@example.com").ok());
  ASSERT_TRUE(mail->SetFromAddress("ann@example.com").ok());

  EXPECT_EQ(engine->MailboxCount().outcome().number(), err::mailNotEncrypted);
  EXPECT_EQ(engine->SendMail(*mail).number(), err::mailNotEncrypted);
  for (const std::string& line : pop.heard()) EXPECT_TRUE(line == "CAPA" || line == "QUIT") << line;
  for (const std::string& line : smtp.heard())
    EXPECT_TRUE(line.starts_with("EHLO") || line == "QUIT") << line;

  // One that offers it and fails at it is no such server.
  RudeServer failing(
      [](const std::string& line) {
        return line.starts_with("EHLO") ? "250-hello\r\n250 STARTTLS\r\n"
                                        : "454 TLS not available\r\n";
      },
      address);
  engine->SetSmtpHost(failing.host());
  EXPECT_TRUE(holds(engine->SendMail(*mail).description(), "refuses: 454 TLS not available"));
  engine->SetSmtpHost(smtp.host());

  engine->AllowPlain(address);
  EXPECT_EQ(engine->MailboxCount().valueOr(-1), 1);
  EXPECT_TRUE(engine->SendMail(*mail).ok());
}

}  // namespace skv::test
