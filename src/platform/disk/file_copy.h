// The content of one open file into another.
#pragma once

#include <sys/types.h>

namespace skv {

// Up to this length the calls around a file cost more than its bytes.
inline constexpr off_t smallFile = 32768;

// Everything up to the source's end, from the start; 0 or the system's error number. `length` is
// what the source is said to have. Shares the blocks of a file that is not small where the disk
// can.
int copyContent(int from, int to, off_t length);

}  // namespace skv
