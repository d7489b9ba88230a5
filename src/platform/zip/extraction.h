// Unpacking many entries at once.
#pragma once

#include <functional>

#include "platform/zip/extraction_plan.h"

namespace skv {

// Unpacks on two processors. `progress` is called now and then on the calling thread, with the part
// that is done in percent, and answers whether to go on. Stops when an entry cannot be unpacked;
// what was complete by then stays.
Outcome extractFiles(FileSystem& files, const ArchiveFile& archive, const ExtractionPlan& plan,
                     const std::function<bool(int percent)>& progress);

}  // namespace skv
