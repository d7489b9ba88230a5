#include "support/metafile_program.h"

namespace skv::test {

const char* metafileProgram() { return METAFILE_PROGRAM; }

}  // namespace skv::test
