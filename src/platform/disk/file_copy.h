// The content of one open file into another.
#pragma once

namespace skv {

// Everything up to the source's end, from the start; 0 or the system's error number. Shares the
// blocks where the disk can.
int copyContent(int from, int to);

}  // namespace skv
