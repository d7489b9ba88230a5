// An operation that ends at each of its calls of the disk in turn.
#pragma once

#include <gtest/gtest.h>

#include <functional>

#include "support/faulty_file_system.h"

namespace skv::test {

enum class Ending {
  fullDisk,    // a call that changes the disk fails
  failure,     // the same with a device error
  failedLook,  // a call that only looks fails
  kill,        // the process is gone
  emptyFiles,  // the power is cut: what was not flushed is empty,
  lostFiles,   // or not there
};

// Runs once for each call and once more, in which nothing happens. `check` is told whether the call
// was reached. Answers how many there are.
inline int forEveryCall(FaultyFileSystem& files, Ending ending,
                        const std::function<void()>& prepare, const std::function<void()>& run,
                        const std::function<void(bool struck)>& check) {
  constexpr int most = 500;
  for (int call = 1; call < most; ++call) {
    SCOPED_TRACE("ending " + std::to_string(static_cast<int>(ending)) + " at call " +
                 std::to_string(call));
    prepare();
    if (ending == Ending::fullDisk)
      files.failAt(call, err::diskFull);
    else if (ending == Ending::failure)
      files.failAt(call, err::deviceIo);
    else if (ending == Ending::failedLook)
      files.failReadAt(call, err::deviceIo);
    else
      files.killAt(call);
    try {
      run();
    } catch (const Killed&) {
    }
    const bool struck = files.heal();
    if (ending == Ending::emptyFiles) files.powerCut(FaultyFileSystem::Lost::contents);
    if (ending == Ending::lostFiles) files.powerCut(FaultyFileSystem::Lost::files);
    check(struck);
    if (!struck) return call - 1;
  }
  ADD_FAILURE() << "more calls than there can be";
  return most;
}

// The same for several endings.
inline void forEveryEnding(FaultyFileSystem& files, const std::function<void()>& prepare,
                           const std::function<void()>& run,
                           const std::function<void(bool struck)>& check,
                           std::initializer_list<Ending> endings = {
                               Ending::fullDisk, Ending::failedLook, Ending::kill,
                               Ending::emptyFiles, Ending::lostFiles}) {
  for (const Ending ending : endings)
    EXPECT_GT(forEveryCall(files, ending, prepare, run, check), 2);
}

}  // namespace skv::test
