#include "pictures/picture_lookup.h"

#include <initializer_list>
#include <string_view>
#include <utility>
#include <vector>

#include "base/text.h"

namespace skv {

namespace {

constexpr std::string_view jpg = ".jpg", gif = ".gif", png = ".png", webp = ".webp";

bool endsIn(std::string_view name, std::string_view ending) {
  return name.size() > ending.size() &&
         lowerAscii(name.substr(name.size() - ending.size())) == ending;
}

// The files of a folder, by one listing.
class PictureFolder {
 public:
  PictureFolder(const FileSystem& files, const std::string& folder)
      : files_(files), folder_(folder) {
    if (folder.empty()) return;
    if (auto listing = files.list(folder, FileSystem::Entries::named); listing.ok())
      entries_ = std::move(listing).value();
  }

  // The JPEG of that name, hidden or not.
  std::string jpeg(std::string_view name) const {
    for (const FolderEntry& entry : entries_)
      if (!entry.folder && endsIn(entry.name, jpg) && equalsIgnoringCase(entry.name, name))
        return folder_ + entry.name;
    return {};
  }

  std::string ownOr(std::initializer_list<std::string_view> endings) const {
    std::string file = jpeg(ownPictureName);
    return file.empty() ? first(endings) : file;
  }
  // By the endings, the first of which counts most.
  std::string first(std::initializer_list<std::string_view> endings) const {
    std::string file;
    for (const std::string_view ending : endings)
      if (file.empty()) file = first(ending);
    return file;
  }

 private:
  std::string first(std::string_view ending) const {
    for (const FolderEntry& entry : entries_)
      if (!entry.folder && endsIn(entry.name, ending) && isListed(folder_ + entry.name))
        return folder_ + entry.name;
    return {};
  }
  bool isListed(const std::string& path) const {
    const auto found = files_.attributes(path);
    return found.ok() && !found.value().hidden && !found.value().system;
  }

  const FileSystem& files_;
  const std::string& folder_;
  std::vector<FolderEntry> entries_;
};

}  // namespace

std::string ownPictureIn(const FileSystem& files, const std::string& folder) {
  return PictureFolder(files, folder).jpeg(ownPictureName);
}

std::string firstPictureIn(const FileSystem& files, const std::string& folder) {
  return PictureFolder(files, folder).first({jpg, png, webp});
}

std::string panelPictureIn(const FileSystem& files, const std::string& folder) {
  return PictureFolder(files, folder).ownOr({jpg, png, webp});
}

AircraftPicture findAircraftPicture(const FileSystem& files, const AircraftPlaces& places) {
  const PictureFolder textures(files, places.TexDir);
  std::string file = textures.ownOr({jpg, gif});
  if (file.empty()) {
    const PictureFolder top(files, places.Folder);
    file = top.first({jpg});
    if (file.empty()) file = textures.first({png, webp});
    if (file.empty()) file = top.first({png, webp});
  }
  if (!file.empty() || places.type.empty()) return {std::move(file)};
  // Found among the names of the folder, a type cannot lead out of it.
  file = PictureFolder(files, places.specimens).jpeg(places.type + std::string(jpg));
  const bool specimen = !file.empty();
  return {std::move(file), specimen};
}

}  // namespace skv
