// Takes from this process what drawing a picture does not need.
#pragma once

namespace skv {

// Limits on time, memory, files and processes, and on the calls of the system: afterwards the
// process can read the fonts of the machine, read and write what is open, and end. Where the kernel
// cannot keep it to the fonts, it opens nothing at all.
enum class Confinement { failed, withFonts, withoutFonts };
Confinement confine();

}  // namespace skv
