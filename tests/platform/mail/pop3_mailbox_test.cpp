#include <algorithm>

#include "platform/mail/engine_fixture.h"

namespace skv::test {

// The connection breaks at each command in turn. What was deleted is gone, what was not is there,
// and nothing else is touched.
TEST_F(EngineTest, DeletesWhatItShouldOverBrokenConnections) {
  for (const bool uidl : {true, false})
    for (const char* cutAt : {"", "STAT", "UIDL", "LIST", "TOP ", "DELE", "QUIT"})
      for (const int cuts : {1, 9}) {
        SCOPED_TRACE(std::string(cutAt) + (uidl ? " with UIDL " : " ") + std::to_string(cuts));
        Mailbox box{{mailOf("a"), mailOf("b"), mailOf("a"), mailOf("c")}, true, uidl, "", cuts};
        RudeServer server([&](const std::string& line) { return box(line); });
        auto engine = loadFor(server);
        const auto heads = engine->FetchHeaders(10);
        ASSERT_TRUE(heads.ok()) << heads.outcome().description();
        ASSERT_EQ(subjects(*heads.value()), (std::vector<std::string>{"a", "b", "a", "c"}));
        ASSERT_TRUE(engine->DeleteMail(*heads.value()->MessageAt(1).value()).ok());
        ASSERT_EQ(box.mails.size(), 3U);
        box.cutAt = cutAt;
        const Outcome deleted = engine->DeleteMail(*heads.value()->MessageAt(2).value());
        EXPECT_TRUE(deleted.ok() || cuts > 1 || box.cutAt == "STAT") << deleted.description();
        box.cutAt.clear();
        if (deleted.ok()) {
          EXPECT_EQ(box.mails.size(), 2U);
          EXPECT_TRUE(engine->DeleteMail(*heads.value()->MessageAt(3).value()).ok());
          EXPECT_EQ(box.mails, std::vector{mailOf("a")});
        } else {
          EXPECT_NE(deleted.description(), "");
          EXPECT_GE(box.mails.size(), 2U);
        }
      }
}

TEST_F(EngineTest, DoesWithoutTopAndWithoutUidl) {
  Mailbox box{{mailOf("a"), mailOf("/x/Rome.zip", "\r\n..\r\nBody\r\n")}, false, false, "", 0};
  RudeServer server([&](const std::string& line) { return box(line); });
  auto engine = loadFor(server);
  const auto heads = engine->FetchHeaders(10);
  ASSERT_TRUE(heads.ok()) << heads.outcome().description();
  ASSERT_EQ(subjects(*heads.value()), (std::vector<std::string>{"a", "/x/Rome.zip"}));
  const auto full = engine->FetchFullMail(*heads.value()->MessageAt(1).value());
  EXPECT_EQ(full.value()->GetBody().valueOr(""), ".\nBody\n");
  engine->Disconnect();
  EXPECT_EQ(server.heard().back(), "QUIT");
  EXPECT_EQ(box.sessions, 1);
}

// The server keeps its answer to the second mail until it has heard of the third.
TEST_F(EngineTest, AsksForManyHeadsAtOnceWhereTheServerTakesThat) {
  Mailbox box{{mailOf("a"), mailOf("b"), mailOf("c")}, true, true, "", 0};
  std::string kept;
  RudeServer server([&](const std::string& line) -> std::optional<std::string> {
    if (line == "CAPA") return "+OK\r\nTOP\r\nUSER\r\nPIPELINING\r\n.\r\n";
    if (line.starts_with("TOP 2")) return kept = *box(line), "";
    return line.starts_with("TOP 3") ? kept + *box(line) : box(line);
  });
  const auto engine = loadFor(server, 5s);
  const auto heads = engine->FetchHeaders(10);
  ASSERT_TRUE(heads.ok()) << heads.outcome().description();
  EXPECT_EQ(heads.value()->MessageCount(), 3);
}

// Servers whose names and numbers are another mail's soon, be it within one session.
TEST_F(EngineTest, TakesAndDeletesNoOtherMailThanTheOneListed) {
  const std::string own = mailOf("own"), a = mailOf("/x/a.zip"), b = mailOf("/x/b.zip"),
                    last = mailOf("last");
  for (const bool meanwhile : {false, true})
    for (const bool uidl : {true, false}) {
      SCOPED_TRACE(std::string(meanwhile ? "meanwhile " : "") + (uidl ? "UIDL" : ""));
      Mailbox box{{own, own + "x\r\n", a, b, last}, true, uidl, "", 0};
      box.namesPlaces = true;
      RudeServer server([&](const std::string& line) { return box(line); });
      auto engine = loadFor(server);
      const auto heads = engine->FetchHeaders(10);
      ASSERT_TRUE(heads.ok()) << heads.outcome().description();
      const auto head = [&](int index) -> const MailMessage& {
        return *heads.value()->MessageAt(index).value();
      };
      if (!meanwhile) engine->Disconnect();
      box.mails.erase(box.mails.begin());  // by another program
      const auto full = engine->FetchFullMail(head(2));
      const std::string got = full.ok() ? full.value()->GetSubject() : full.outcome().description();
      EXPECT_TRUE(meanwhile ? holds(got, "another mail") : got == "/x/a.zip") << got;
      EXPECT_TRUE(engine->DeleteMail(head(2)).ok());
      EXPECT_EQ(box.mails, (std::vector{own + "x\r\n", b, last}));
      EXPECT_TRUE(engine->DeleteMail(head(3)).ok());
      EXPECT_EQ(box.mails, (std::vector{own + "x\r\n", last}));
      EXPECT_TRUE(engine->DeleteMail(head(3)).ok());  // is gone
      engine->Disconnect();
      box.mails = {own, own + "xx\r\n", "x" + own, last + "y\r\n"};
      EXPECT_EQ(engine->DeleteMail(head(2)).ok(), !uidl);  // its name is another one's
      EXPECT_EQ(box.mails.size(), 4U);
    }
  // A server that has forgotten the names that it gave.
  Mailbox box{{own, a, last}, true, true, "", 0};
  RudeServer server([&](const std::string& line) { return box(line); });
  auto engine = loadFor(server);
  const auto heads = engine->FetchHeaders(10);
  engine->Disconnect();
  box.knowsUidl = false;
  EXPECT_TRUE(engine->DeleteMail(*heads.value()->MessageAt(1).value()).ok());
  EXPECT_EQ(box.mails, (std::vector{own, last}));
}

// One mail that cannot be had does not keep the others from their turn, nor does it cost more than
// one silence.
TEST_F(EngineTest, PassesOverAMailThatDoesNotCome) {
  const std::string half = "+OK\r\nSubject: bad\r\n\r\nhalf";
  const struct {
    const char* what;
    std::vector<std::string> answers;  // to RETR, one after the other; then the mail
    int number;
    std::size_t tries;
    const char* told;
  } cases[] = {
      {"breaks once", {half + "~"}, 0, 2, ""},
      {"breaks twice", {half + "~", half + "~"}, err::mailLost, 2, "has broken off"},
      {"is silent", {half}, err::mailLost, 1, "does not answer"},
      {"is refused", {"-ERR busy\r\n"}, err::mailLost, 1, "busy"},
      {"too large", {}, err::mailLost, 0, "4768 MB"},
  };
  for (const auto& [what, answers, number, tries, told] : cases) {
    SCOPED_TRACE(what);
    Mailbox box{{mailOf("bad"), mailOf("good")}, true, true, "", 0};
    std::size_t asked = 0;
    RudeServer server(
        [&, &replies = answers, isLarge = told == std::string("4768 MB")](const std::string& line) {
          if (line == "LIST 1" && isLarge)
            return std::optional<std::string>("+OK 1 5000000000\r\n");
          if (line == "RETR 1" && asked++ < replies.size())
            return std::optional<std::string>(replies[asked - 1]);
          return box(line);
        });
    auto engine = loadFor(server, 700ms);
    const auto heads = engine->FetchHeaders(0);
    ASSERT_TRUE(heads.ok()) << heads.outcome().description();
    const auto bad = engine->FetchFullMail(*heads.value()->MessageAt(0).value());
    EXPECT_EQ(bad.outcome().number(), number);
    EXPECT_TRUE(holds(bad.outcome().description(), told));
    EXPECT_TRUE(bad.ok() || holds(bad.outcome().description(), "\"bad\""));
    EXPECT_EQ(asked, tries);
    EXPECT_TRUE(engine->FetchFullMail(*heads.value()->MessageAt(1).value()).ok());
    EXPECT_EQ(box.mails.size(), 2U);
  }
  // Silence is the server's own when it comes again, and is waited for once.
  Mailbox box{{mailOf("a"), mailOf("b")}, true, true, "", 0};
  RudeServer server([&](const std::string& line) {
    const bool silent = line.starts_with("RETR") || line.starts_with("DELE");
    return silent ? std::optional<std::string>("") : box(line);
  });
  auto engine = loadFor(server, 700ms);
  const auto heads = engine->FetchHeaders(0);
  for (const int index : {0, 1})
    EXPECT_EQ(engine->FetchFullMail(*heads.value()->MessageAt(index).value()).outcome().number(),
              index == 0 ? err::mailLost : err::mail);
  EXPECT_EQ(engine->DeleteMail(*heads.value()->MessageAt(0).value()).number(), err::mail);
  const auto heard = server.heard();
  EXPECT_EQ(std::ranges::count_if(heard, [](auto& line) { return line.starts_with("DELE"); }), 1);
}

TEST_F(EngineTest, KnowsNoOtherLineEndThanCrLf) {
  std::string words;
  for (int word = 0; word < 300; ++word) words += "=?utf-8?b?0KHQsNC80L7Qu9GR0YI=?=\r\n ";
  Mailbox box{{mailOf("a", "\r\nx\n.\ny\n..\r\n..z\r\n"), mailOf(words + "/FSSkyvaultPack/AC/c")},
              true,
              true,
              "",
              0};
  // Piece by piece, so that each may end anywhere.
  RudeServer server([&](const std::string& line) {
    auto answer = box(line);
    return line.starts_with("RETR") ? "~" + *answer : *answer;
  });
  auto engine = loadFor(server);
  const auto heads = engine->FetchHeaders(10);
  EXPECT_EQ(heads.value()->MessageAt(0).value()->GetBody().valueOr(""), "x\n.\ny\n..\n.z\n");
  EXPECT_TRUE(heads.value()->MessageAt(1).value()->GetSubject().ends_with(
      "\u0421\u0430\u043c\u043e\u043b\u0451\u0442 /FSSkyvaultPack/AC/c"));
  EXPECT_EQ(
      engine->FetchFullMail(*heads.value()->MessageAt(0).value()).value()->GetBody().valueOr(""),
      "x\n.\ny\n..\n.z\n");
}

}  // namespace skv::test
