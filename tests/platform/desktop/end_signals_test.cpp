#include "platform/desktop/end_signals.h"

#include <gtest/gtest.h>
#include <poll.h>

#include <csignal>

namespace skv::test {

bool hasCome(const EndSignals& signals) {
  pollfd look{signals.descriptor(), POLLIN, 0};
  return ::poll(&look, 1, 0) == 1;
}

TEST(EndSignalsTest, TheFirstIsAQuestionTheSecondIsNot) {
  // The tests may have been started with some of them ignored.
  for (const int signal : {SIGTERM, SIGHUP, SIGINT}) std::signal(signal, SIG_DFL);
  EndSignals signals;
  for (const int signal : {SIGTERM, SIGHUP, SIGINT}) {
    EXPECT_FALSE(hasCome(signals));
    std::raise(signal);
    EXPECT_TRUE(hasCome(signals)) << signal;
    signals.answer();
  }
  EXPECT_EXIT(
      {
        std::raise(SIGHUP);
        std::raise(SIGTERM);
      },
      ::testing::KilledBySignal(SIGTERM), "");
}

TEST(EndSignalsTest, WhatWasToBeIgnoredStaysIgnored) {
  std::signal(SIGHUP, SIG_IGN);  // as nohup has it
  {
    EndSignals signals;
    std::raise(SIGHUP);
    EXPECT_FALSE(hasCome(signals));
    std::raise(SIGTERM);
    EXPECT_TRUE(hasCome(signals));
    std::raise(SIGHUP);
    signals.answer();
  }
  EXPECT_EQ(std::signal(SIGHUP, SIG_DFL), SIG_IGN);
}

}  // namespace skv::test
