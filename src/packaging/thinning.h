// The files that compressing takes out of an add-on's folders: all but those that thinning leaves
// there, and each of them only when its Package is known to hold it as it is now.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "core/walktree.h"

namespace skv {

class Thinning {
 public:
  // A folder of the add-on and its place in a Package, both with trailing backslash.
  struct Part {
    std::string folder, part;
  };
  Thinning(App& app, std::vector<Part> parts)
      : app_(app), files_(app.files()), parts_(std::move(parts)) {}

  // Lists what is to go: nothing behind a link, and nothing of folders that are not there.
  WalkReport collect();
  // What collect() has found.
  std::size_t count() const { return found_.size(); }
  // Looks up each of them in the Package, and notes how it was then. Ends at the first one that the
  // Package does not hold, and when the user wants it.
  WalkReport verify(const std::string& package);
  // Deletes those that verify() has found in the Package and that are the same still.
  WalkReport thin();

 private:
  struct File {
    std::string path, entry;  // on disk, in the Package
    FileState state = {};     // since verify()
  };
  // Whether no link lies on the way from the add-on's folder to this one. Notes what cannot be
  // told.
  bool leadsHere(const std::string& folder, WalkReport& report);
  Outcome unchanged(const File& file) const;

  App& app_;
  FileSystem& files_;
  const std::vector<Part> parts_;
  std::vector<File> found_;
  std::map<std::string, bool> leads_;  // answers of leadsHere()
};

}  // namespace skv
