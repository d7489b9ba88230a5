#include "core/collect_files.h"

#include <utility>

namespace skv {

WalkReport collectFiles(App& app, const std::string& folder, std::vector<std::string>& files,
                        OnStop onStop) {
  const auto others = std::exchange(app.PackFileList, {});
  WalkReport report = WalkTree(app, folder, "", WalkCollect, true, onStop);
  files = std::exchange(app.PackFileList, others);
  report.done = 0;
  return report;
}

}  // namespace skv
