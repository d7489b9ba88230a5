#include "core/program_folder.h"

#include "core/disk_queries.h"

namespace skv {

std::string shippedWith(const App& app, const std::string& name) {
  std::string beside = app.AppDir + name;
  const std::string& data = app.platform.environment.dataFolder;
  if (data.empty() || PathExists(app.platform.files, beside)) return beside;
  return data + name;
}

}  // namespace skv
