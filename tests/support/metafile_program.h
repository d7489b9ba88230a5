#pragma once

namespace skv::test {

// The path of the skyvault-wmf that was built with the tests.
const char* metafileProgram();

}  // namespace skv::test
