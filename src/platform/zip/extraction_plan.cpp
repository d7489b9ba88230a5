#include "platform/zip/extraction_plan.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "base/paths.h"
#include "base/text.h"
#include "platform/zip/entry_names.h"

namespace skv {

namespace {

class Planner {
 public:
  Planner(const std::string& folder, bool keepFolders)
      : root_(withBackslash(folder)), keepFolders_(keepFolders) {}

  Outcome add(const ChosenEntry& entry) {
    auto read = entryPath(entry.entry->Filename);
    if (!read.ok()) return read.outcome();
    std::vector<std::string> path = std::move(read).value();
    const bool folder = isFolderName(entry.entry->Filename);
    std::string name;
    if (!folder) {
      if (path.empty()) return Outcome::withText(err::zip, "has no name");
      name = std::move(path.back());
      path.pop_back();
    }
    if (!keepFolders_) path.clear();

    std::string at = root_;
    for (const std::string& element : path) at += element + '\\';
    // Most entries lie where the one before them does.
    if (at != lastFolder_) {
      if (Outcome made = addFolders(path); !made.ok()) return made;
      lastFolder_ = at;
    }
    return folder ? Outcome() : addFile(entry, at + name);
  }

  ExtractionPlan take() {
    // Folder by folder, however the archive mixes them: whoever makes the files looks into each
    // folder anew when they come apart.
    std::ranges::stable_sort(plan_.files, {}, [](const ExtractionPlan::Target& target) {
      return std::string_view(target.path).substr(0, target.path.rfind('\\'));
    });
    for (const auto& target : plan_.files) plan_.bytes += target.entry.entry->size;
    return std::move(plan_);
  }

 private:
  Outcome addFolders(const std::vector<std::string>& path) {
    std::string at = root_;
    for (const std::string& element : path) {
      at += element;
      std::string key = upper(at);
      if (fileAt_.contains(key))
        return Outcome::withText(err::zip, "needs a folder where another entry is a file");
      if (folders_.insert(std::move(key)).second) plan_.folders.push_back(at);
      at += '\\';
    }
    return {};
  }

  Outcome addFile(const ChosenEntry& entry, std::string path) {
    std::string key = upper(path);
    if (folders_.contains(key))
      return Outcome::withText(err::zip, "is a file where another entry needs a folder");
    const auto [known, isNew] = fileAt_.try_emplace(std::move(key), plan_.files.size());
    if (isNew)
      plan_.files.push_back({entry, std::move(path)});
    else
      plan_.files[known->second].entry = entry;
    return {};
  }

  const std::string root_;
  const bool keepFolders_;
  ExtractionPlan plan_;
  std::string lastFolder_;
  // Keys are paths in upper case.
  std::unordered_set<std::string> folders_;
  std::unordered_map<std::string, std::size_t> fileAt_;  // to the place in plan_.files
};

}  // namespace

Result<ExtractionPlan> planExtraction(const std::string& archive,
                                      const std::vector<ChosenEntry>& chosen,
                                      const std::string& folder, bool keepFolders) {
  Planner planner(folder, keepFolders);
  for (const ChosenEntry& entry : chosen) {
    const Outcome added = planner.add(entry);
    if (!added.ok()) return entryFailure(archive, entry.entry->Filename, added.description());
  }
  return planner.take();
}

}  // namespace skv
