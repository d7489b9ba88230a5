// The ZIP control over libzip, with libdeflate for all that fits in memory.
#pragma once

#include "base/text.h"
#include "platform/zipit.h"

namespace skv {

class LibzipEngine : public ZipEngine {
 public:
  // `systemPage`: the code page of names that archives of Windows programs hold without a mark.
  explicit LibzipEngine(CodePage systemPage) : systemPage_(std::move(systemPage)) {}
  std::unique_ptr<Zipit> load(FileSystem& files) override;

 private:
  CodePage systemPage_;
};

}  // namespace skv
