// An operation that ends at each of its calls of the disk in turn.
#pragma once

#include <gtest/gtest.h>

#include <functional>

#include "support/faulty_file_system.h"

namespace skv::test {

// A call that changes the disk fails, as on a full disk or with a device error; a call that only
// looks fails; the process is gone; the power is cut, and what was not flushed is empty or not
// there.
enum class Ending { fullDisk, failure, failedLook, kill, emptyFiles, lostFiles };

constexpr auto mostEndings = {Ending::fullDisk, Ending::failedLook, Ending::kill,
                              Ending::emptyFiles, Ending::lostFiles};

using Step = std::function<void()>;
// How a run has ended. As a bool: whether the call was reached.
struct RunEnd {
  bool struck = false;
  bool killed = false;  // and by it the program
  operator bool() const { return struck; }
};
using Check = std::function<void(RunEnd)>;

// Runs once for each call and once more, in which nothing happens. Answers how many there are.
inline int forEveryCall(FaultyFileSystem& files, Ending ending, const Step& prepare,
                        const Step& run, const Check& check) {
  for (int call = 1; call < 500; ++call) {
    SCOPED_TRACE(::testing::Message()
                 << "ending " << static_cast<int>(ending) << " at call " << call);
    prepare();
    if (ending == Ending::failedLook)
      files.failReadAt(call, err::deviceIo);
    else if (ending < Ending::failedLook)
      files.failAt(call, ending == Ending::failure ? err::deviceIo : err::diskFull);
    else
      files.killAt(call);
    RunEnd end;
    try {
      run();
    } catch (const Killed&) {
      end.killed = true;
    }
    end.struck = files.heal();
    if (ending == Ending::emptyFiles) files.powerCut(FaultyFileSystem::Lost::contents);
    if (ending == Ending::lostFiles) files.powerCut(FaultyFileSystem::Lost::files);
    check(end);
    if (!end.struck) return call - 1;
  }
  ADD_FAILURE() << "more calls than there can be";
  return 0;
}

// The same for several endings.
inline void forEveryEnding(FaultyFileSystem& files, const Step& prepare, const Step& run,
                           const Check& check,
                           std::initializer_list<Ending> endings = mostEndings) {
  for (const Ending ending : endings)
    EXPECT_GT(forEveryCall(files, ending, prepare, run, check), 2);
}

}  // namespace skv::test
