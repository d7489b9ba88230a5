#include <sys/syscall.h>

#include <algorithm>
#include <sstream>

#include "platform/disk/native_calls.h"
#include "platform/mail/curl_mail_engine.h"
#include "platform/mail/mail_host.h"
#include "platform/mail/outgoing_mail.h"
#include "platform/mail/parse_guard.h"
#include "platform/mail/received_mail.h"
#include "platform/mail/work_file.h"
#include "support/disk_fixture.h"
#include "support/failing_calls.h"
#include "support/text.h"

namespace skv::test {

struct MessageTest : DiskTest {
  // `text` has "\n" at its line ends.
  std::unique_ptr<MailMessage> received(const std::string& text) {
    const std::string mail = withCrLf(text);
    auto file = makeWorkFile(drive.native() + "/work");
    EXPECT_TRUE(file.ok());
    EXPECT_EQ(writeAll(file.value().get(), mail), 0);
    auto read = readMail({std::make_shared<Descriptor>(std::move(file).value()), 0,
                          static_cast<std::int64_t>(mail.size())},
                         disk, pulse);
    outcome = read.outcome();
    return read.ok() ? std::move(read).value() : nullptr;
  }
  // "name=content;" for each attachment, "name!;" for one that cannot be saved.
  std::string attachments(const MailMessage& mail) {
    std::string all;
    for (int at = 0; at < mail.AttachmentCount().valueOr(-1); ++at) {
      drive.clear("C:\\Out");
      const std::string name = mail.AttachmentName(at).valueOr("?");
      const Outcome saved = mail.SaveAttachment(at, "C:\\Out");
      EXPECT_EQ(drive.filesIn("C:\\").size(), saved.ok() ? 1U : 0U) << name;  // and nowhere else
      all += saved.ok() ? name + "=" + drive.read("C:\\Out\\" + name) + ";" : name + "!;";
    }
    return all;
  }
  Outcome outcome;  // of the last mail
  const CurlMailSystem system;
  const std::unique_ptr<MailEngine> engine = CurlMailSystem().load(disk);
  MailPulse pulse{*engine};
};

std::string part(const std::string& headers, const std::string& content) {
  return "--B\n" + headers + "\n\n" + content + "\n";
}
std::string mixed(const std::string& parts) {
  return "Content-Type: multipart/mixed; boundary=B\n\n" + parts + "--B--\n";
}
std::string named(const std::string& disposition) {
  return mixed(part("Content-Type: application/zip\nContent-Disposition: " + disposition, "x"));
}

TEST_F(MessageTest, ReadsMailsAsTheyAre) {
  const std::string zip = part(
      "Content-Type: application/zip; name=a.zip\nContent-Transfer-Encoding: base64", "UEsD\nBAo=");
  const struct {
    std::string what, mail, subject, body, attachments;
  } cases[] = {
      {"folded", "Subject: /FSSkyvaultPack/AC/Big\n Plane.zip\n\nHi\n",
       "/FSSkyvaultPack/AC/Big Plane.zip", "Hi\n", ""},
      {"encoded words",
       "Subject: =?utf-8?Q?/FSSkyvaultPack/?=\n =?iso-8859-1?B?QUMvTfxuY2hlbi56aXA=?=\n\n",
       "/FSSkyvaultPack/AC/M\u00fcnchen.zip", "", ""},
      {"broken words, 8 bit", "Subject: Fl\xfcge =?utf-8?Q?Re: /x=?= \x01 =?zz?B?!!\n\n",
       "Fl\u00fcge Re: /x   =?zz?B?!!", "", ""},
      {"no subject", "To: x\n\nSubject: no\n", "", "Subject: no\n", ""},
      {"base64", mixed(part("Content-Type: text/plain", "note") + zip), "", "note",
       "a.zip=PK\x03\x04\n;"},
      {"quoted-printable, 7 bit without a type",
       mixed(part("Content-Disposition: attachment; filename=q\nContent-Transfer-Encoding: "
                  "quoted-printable",
                  "a=3D0=\nb=3D") +
             part("Content-Disposition: attachment; filename=b.zip", "seven")),
       "", "", "q=a=0b=;b.zip=seven;"},
      {"within each other and forwarded",
       mixed(part("Content-Type: multipart/mixed; boundary=C",
                  "--C\nContent-Type: text/plain\n\ndeep\n--C--") +
             part("Content-Type: message/rfc822",
                  "Subject: inner\nContent-Type: multipart/mixed; boundary=D\n\n"
                  "--D\nContent-Disposition: attachment; filename=in.zip\n\nz\n--D--")),
       "", "deep", "in.zip=z;"},
      {"RFC 2231 in pieces",
       named("attachment; filename*0*=utf-8''Z%C3%BC; filename*1*=rich; filename*2=.zip"), "", "",
       "Z\u00fcrich.zip=x;"},
      {"RFC 2047 in a name", named("attachment; filename=\"=?utf-8?B?WsO8cmljaC56aXA=?=\""), "", "",
       "Z\u00fcrich.zip=x;"},
      {"8 bit name", named("attachment; filename=\"Z\xfcrich.zip\""), "", "", "Z\u00fcrich.zip=x;"},
      {"folders in a name", named("attachment; filename=\"C:\\\\Users\\\\..\\\\Rome.zip\""), "", "",
       "Rome.zip=x;"},
      {"names that are none",
       mixed(part("Content-Disposition: attachment", "x") +
             part("Content-Disposition: attachment; filename=\"../..\"", "x") +
             part("Content-Disposition: attachment; filename=\"C:a.zip\"", "x") +
             part("Content-Disposition: attachment; filename=\"a.\"", "x")),
       "", "", "!;..!;C:a.zip!;a.!;"},
      {"alternatives",
       "Content-Type: multipart/alternative; boundary=B\n\n" +
           part("Content-Type: text/html", "<b>no</b>") + part("Content-Type: text/plain", "yes") +
           "--B--\n",
       "", "yes", ""},
      {"HTML alone",
       "Content-Type: text/html; charset=iso-8859-1\n\n<html><head><title>t</title><style>p{}"
       "</style></head><body><p>Gr\xfc&szlig;e &amp; <b>Fl\xfcge</b><br>two<script>x()</script>"
       "</p><div>three</div>",
       "", "Gr\u00fc\u00dfe & Fl\u00fcge\ntwo\nthree\n", ""},
      {"HTML that hides things",
       "Content-Type: text/html\n\n<HEAD><style>a<b</style><title>t<p></title>h<p>1 < 2 &gt; 0 "
       "&#x41;&#66;&nope; <!-- <p>no --><a title=\">\" x>in</a><script>if (a</b) '</p>'</script>"
       "<![if x]>out<b",
       "", "1 < 2 > 0 AB&nope; inout", ""},
      {"an unknown set",
       "Content-Type: text/plain; charset=klingon\n\nGr\xfc\xdf"
       "e\x07\n",
       "", "Gr\u00fc\u00dfe\n", ""},
      {"uuencoded in a text", "Subject: s\n\nbefore\nbegin 644 a.zip\n#0V%T\n`\nend\nafter\n", "s",
       "before\nafter\n", "a.zip=Cat;"},
      {"begin of a sentence", "\nbegin 2002 with us\nbegin 644 x\nThis is no code at all, is it?\n",
       "", "begin 2002 with us\nbegin 644 x\nThis is no code at all, is it?\n", ""},
      {"cut off", "Content-Type: multipart/mixed; boundary=B\n\n" + zip.substr(0, zip.size() - 4),
       "", "", "a.zip=PK\x03;"},
      {"no mail at all", std::string("\0\xff\n\x80", 4), "", "", ""},
  };
  for (const auto& [what, mail, subject, body, wanted] : cases) {
    SCOPED_TRACE(what);
    const auto read = received(mail);
    EXPECT_EQ(read->GetSubject(), subject);
    EXPECT_EQ(read->GetBody().valueOr("?"), body);
    EXPECT_EQ(attachments(*read), wanted);
  }
  std::string nested, vast = "Content-Type: text/html\n\n";
  for (int depth = 0; depth < 20'000; ++depth)
    nested += "Content-Type: multipart/mixed; boundary=b" + std::to_string(depth) + "\n\n--b" +
              std::to_string(depth) + "\n";
  EXPECT_EQ(received(nested)->AttachmentCount().valueOr(-1), 0);
  while (vast.size() < (std::size_t{2} << 20U)) vast += "<div>And one line more\n";
  const std::string body = received(vast)->GetBody().valueOr("");
  EXPECT_TRUE(body.size() < (std::size_t{1} << 20U) && body.ends_with("\n[...]"));
}

TEST_F(MessageTest, AnAttachmentIsSavedWhenItIsOnTheDisk) {
  const auto mail = received(mixed(part("Content-Disposition: attachment; filename=a.zip", "a")));
  const auto save = [&] { return std::to_string(mail->SaveAttachment(0, "C:\\").number()); };
  const auto number = withFailingCalls({SYS_fsync}, EIO, save);
  if (!number) GTEST_SKIP() << "this machine lets no calls fail";
  EXPECT_EQ(*number, std::to_string(err::deviceIo));
}

// What a stranger repeats a million times costs no memory without a bound, and can be stopped.
TEST_F(MessageTest, BearsMailsThatAreMadeToHurt) {
  const std::string top = "Content-Type: multipart/mixed; boundary=B\n\n";
  const struct {
    const char* what;
    std::string begin, again;
  } cases[] = {
      {"parts", top, "--B\nContent-Disposition: attachment; filename=a.zip\n\n"},
      {"bare parts", top, "--B\n\n"},
      {"headers in a part", top + "--B\n", "X: y\n"},
      {"one header", top + "--B\nX: ", "one and the same line without an end "},
      {"headers of a forwarded mail", "Content-Type: message/rfc822\n\n", "X: y\n"},
      {"files in a text", "\n", "begin 644 a.zip\n#0V%T\nend\n"},
      {"addresses within each other", "Content-Type: message/rfc822\n\nTO: x", "a:"},
      {"words without an end", "Subject: x", "=?utf-8?q?a "},
      {"marks of parts", top + "--B\n\n", "--b\n"},
  };
  for (const auto& [what, begin, again] : cases) {
    SCOPED_TRACE(what);
    std::string mail = begin;
    // One header is dear when it is long, the others by their number.
    const std::size_t length = std::size_t{again.size() > 30 ? 10U : 3U} << 20U;
    while (mail.size() < length) mail += again;
    const std::size_t before = ParseGuard::inUse();
    const auto read = received(mail);
    EXPECT_LT(ParseGuard::inUse(), before + (std::size_t{64} << 20U));
    EXPECT_EQ(outcome.number(), read ? 0 : err::mailLost);

    engine->Yield = [] { return false; };
    EXPECT_EQ(received(mail), nullptr);
    EXPECT_EQ(outcome.number(), err::cancelled);
    engine->Yield = nullptr;
    pulse.restart();
  }
  // A file's name of such words would take minutes.
  std::string words;
  while (words.size() < std::size_t{1} << 20U) words += "=?utf-8?q?a ";
  EXPECT_NE(received(named("attachment; filename=\"" + words + "\"")), nullptr);
}

TEST_F(MessageTest, WritesMailsThatComeBackAsTheyWere) {
  std::string content;
  for (const std::size_t length : {0U, 1U, 2U, 56U, 57U, 58U, 2048U * 57U, 300'000U}) {
    while (content.size() < length) content += static_cast<char>(content.size() * 31 >> 2U);
    content.resize(length);
    drive.write("C:\\in.zip", content);
    OutgoingMessage mail(disk);
    mail.SetFromName("J\u00f6rg \"Ace\"\r\nBcc: c@example.com");
    ASSERT_TRUE(mail.SetFromAddress("ann@example.com").ok());
    ASSERT_TRUE(mail.AddRecipient("bob@example.com", " bob@example.com ").ok());
    const std::string name =
        "Z\u00fcrich, a long name with many words for a long line = " + std::to_string(length) +
        ".zip";
    const std::string body = "Gr\u00fc\u00dfe\n.\nFrom me\n" + std::string(2000, 'x') + "\n\n";
    mail.SetSubject("/FSSkyvaultPack/SC/" + name + "\nX-Evil: 1");
    mail.SetBody(body);
    ASSERT_TRUE(mail.AddAttachment("C:\\in.zip").ok());
    ASSERT_TRUE(mail.SetAttachmentName(0, name).ok());
    auto source = mail.encoded();
    ASSERT_TRUE(source.ok());
    std::string text, buffer(777, '\0');
    for (;;) {
      const auto got = source.value().read(buffer);
      if (got.valueOr(0) == 0) break;
      text += buffer.substr(0, got.value());
    }
    EXPECT_EQ(text.size(), source.value().size);
    drive.remove("C:\\in.zip");

    std::string headers, line;
    for (std::istringstream lines(text); std::getline(lines, line) && line != "\r";) {
      EXPECT_TRUE(line.ends_with('\r') && line.size() < 100) << line;
      if (!line.starts_with(' ') && !line.starts_with('\t'))
        headers += line.substr(0, line.find(':') + 1);
    }
    EXPECT_EQ(headers, "Date:From:Subject:To:Message-Id:MIME-Version:Content-Type:");
    EXPECT_TRUE(std::ranges::none_of(text, [](char c) { return static_cast<signed char>(c) < 0; }));
    std::erase(text, '\r');
    const auto read = received(text);
    EXPECT_EQ(read->GetSubject(), "/FSSkyvaultPack/SC/" + name + " X-Evil: 1");
    EXPECT_EQ(read->GetBody().valueOr(""), body);
    EXPECT_EQ(attachments(*read), name + "=" + content + ";");
  }
}

TEST_F(MessageTest, RefusesWhatIsNoAddressNoNameAndNoFile) {
  OutgoingMessage mail(disk);
  for (const char* address :
       {"", "bob", "@example.com", "bob@", "a@b@c", "bob@example.com, ann@example.com", "b b@c.d",
        "bob@example.com\r\nRCPT TO:<ann@example.com>", "b\u00f6b@example.com", "bob@-x.com",
        "<bob@example.com>", "bob@exa..mple.com"}) {
    EXPECT_EQ(mail.AddRecipient("", address).number(), err::mail) << address;
    EXPECT_EQ(mail.SetFromAddress(address).number(), err::mail) << address;
  }
  EXPECT_EQ(engine->SendMail(mail).number(), err::mail);
  EXPECT_TRUE(mail.AddRecipient("", "o'hara+fs@mail.example.co.uk").ok());
  EXPECT_EQ(mail.AddAttachment("C:\\none.zip").outcome().number(), err::fileNotFound);
  EXPECT_EQ(mail.SetAttachmentName(0, "a.zip").number(), err::invalidProcedureCall);
}

TEST(MailHostTest, ReadsWhatUsersWrite) {
  for (const auto& [text, shown] : {std::pair(" Mail.Example.com ", "mail.example.com"),
                                    {"mail.example.com:2525", "mail.example.com:2525"},
                                    {"[::1]:995", "[::1]:995"},
                                    {"fd00::2", "fd00::2"},
                                    {"192.0.2.1:110", "192.0.2.1:110"}}) {
    const auto host = readMailHost(text);
    EXPECT_EQ(host ? host->shown() : "none", shown);
  }
  for (const char* none : {"", "a:0", "a:65536", "a:b", "[::1", "user@example.com", "example.com/x",
                           "exa mple.com", "-x"})
    EXPECT_FALSE(readMailHost(none)) << none;
}

}  // namespace skv::test
