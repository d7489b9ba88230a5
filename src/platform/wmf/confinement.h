// Takes from this process what drawing a picture does not need.
#pragma once

namespace skv {

// Limits on time, memory, files and processes, and on the calls of the system: afterwards the
// process can read files, write to what is open and end. Answers whether all of it holds.
bool confine();

}  // namespace skv
