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

using Path = std::vector<PathElement>;

// The names under which elements of paths stand on disk. Keys are stored paths in upper case, with
// a backslash at their end.
class Names {
 public:
  // Names that the disk takes are theirs before the others are given one.
  void claim(const Path& path) {
    std::string above;
    for (const PathElement& element : path) {
      if (element.name == element.held) claimed_.insert(above + upper(element.held));
      above += upper(element.name) + '\\';
    }
  }

  // In the folder with the key `above`.
  const std::string& of(const PathElement& element, const std::string& above) {
    if (element.name == element.held) return element.held;
    const auto [known, isNew] = given_.try_emplace(above + upper(element.name), element.held);
    std::string& name = known->second;
    if (!isNew || claimed_.insert(above + upper(name)).second) return name;
    // Goes on behind the number that the last entry of this name was given: any number of them may
    // become one name.
    int& number = numbers_.try_emplace(above + upper(name), 1).first->second;
    do name = numbered(element.held, ++number);
    while (!claimed_.insert(above + upper(name)).second);
    return name;
  }

 private:
  static std::string numbered(const std::string& name, int number) {
    const auto dot = std::min(name.rfind('.'), name.size());
    return name.substr(0, dot) + " (" + std::to_string(number) + ")" + name.substr(dot);
  }

  std::unordered_set<std::string> claimed_;
  std::unordered_map<std::string, std::string> given_;
  std::unordered_map<std::string, int> numbers_;  // the last ones given, by the name without one
};

class Planner {
 public:
  Planner(const std::string& folder, bool keepFolders)
      : root_(withoutBackslash(folder)), keepFolders_(keepFolders) {}

  Outcome read(const ChosenEntry& entry) {
    auto path = entryPath(entry.entry->Filename);
    if (!path.ok()) return path.outcome();
    if (path.value().empty() && !isFolderName(entry.entry->Filename))
      return Outcome::withText(err::zip, "has no name");
    Path& elements = paths_.emplace_back(std::move(path).value());
    const std::ptrdiff_t file = isFolderName(entry.entry->Filename) ? 0 : 1;
    if (!keepFolders_) elements.erase(elements.begin(), elements.end() - file);
    allHeld_ = allHeld_ && std::ranges::all_of(elements, [](const PathElement& element) {
                 return element.name == element.held;
               });
    return {};
  }

  // Of the entries in the order in which they were read, when all are.
  Outcome add(const ChosenEntry& entry) {
    if (added_ == 0 && !allHeld_)
      std::ranges::for_each(paths_, [&](const Path& one) { names_.claim(one); });
    Path path = std::move(paths_[added_++]);
    const bool folder = isFolderName(entry.entry->Filename);
    PathElement last;
    if (!folder) {
      last = std::move(path.back());
      path.pop_back();
    }
    std::string stored;
    for (const PathElement& element : path) stored += element.name + '\\';
    // Most entries lie where the one before them does.
    if (stored != stored_ || added_ == 1) {
      if (Outcome made = enter(path); !made.ok()) return made;
      stored_ = std::move(stored);
    }
    return folder ? Outcome() : addFile(entry, last);
  }

  ExtractionPlan take() {
    // Folder by folder, however the archive mixes them.
    std::ranges::stable_sort(plan_.files, {}, &ExtractionPlan::Target::folder);
    for (const auto& target : plan_.files) plan_.bytes += target.entry.entry->size;
    return std::move(plan_);
  }

 private:
  Outcome enter(const Path& path) {
    folder_ = root_;
    folderKey_ = upper(root_);
    storedKey_.clear();
    std::string stored;
    for (const PathElement& element : path) {
      const std::string& name = names_.of(element, storedKey_);
      folder_ += '\\' + name;
      folderKey_ += '\\' + upper(name);
      stored += element.name;
      storedKey_ += upper(element.name) + '\\';
      if (fileAt_.contains(folderKey_))
        return Outcome::withText(err::zip, "needs a folder where another entry is a file");
      if (folders_.insert(folderKey_).second) {
        plan_.folders.push_back(folder_);
        noteRename(stored, element.name, folder_, name);
      }
      stored += '\\';
    }
    return {};
  }

  Outcome addFile(const ChosenEntry& entry, const PathElement& element) {
    const std::string& name = names_.of(element, storedKey_);
    const std::string path = folder_ + '\\' + name;
    std::string key = folderKey_ + '\\' + upper(name);
    if (folders_.contains(key))
      return Outcome::withText(err::zip, "is a file where another entry needs a folder");
    const auto [known, isNew] = fileAt_.try_emplace(std::move(key), plan_.files.size());
    if (isNew) {
      plan_.files.push_back({entry, folder_, name});
      noteRename(stored_ + element.name, element.name, path, name);
    } else {
      plan_.files[known->second].entry = entry;
    }
    return {};
  }

  void noteRename(const std::string& stored, const std::string& name, const std::string& path,
                  const std::string& newName) {
    if (name != newName) plan_.renamed.push_back({stored, path.substr(root_.size() + 1)});
  }

  const std::string root_;
  const bool keepFolders_;
  Names names_;
  std::vector<Path> paths_;
  bool allHeld_ = true;
  std::size_t added_ = 0;
  ExtractionPlan plan_;
  // Where the last entry lies: as stored, with a backslash at its end, the same in upper case, on
  // disk, and that in upper case.
  std::string stored_, storedKey_, folder_, folderKey_;
  // Keys are paths on disk in upper case.
  std::unordered_set<std::string> folders_;
  std::unordered_map<std::string, std::size_t> fileAt_;  // to the place in plan_.files
};

}  // namespace

Result<ExtractionPlan> planExtraction(const std::string& archive,
                                      const std::vector<ChosenEntry>& chosen,
                                      const std::string& folder, bool keepFolders) {
  Planner planner(folder, keepFolders);
  for (auto step : {&Planner::read, &Planner::add})
    for (const ChosenEntry& entry : chosen) {
      const Outcome done = (planner.*step)(entry);
      if (!done.ok()) return entryFailure(archive, entry.entry->Filename, done.description());
    }
  return planner.take();
}

}  // namespace skv
