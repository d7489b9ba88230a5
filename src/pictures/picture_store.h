// The program's own pictures on disk: which image has its file where, and what may be written and
// deleted.
#pragma once

#include <string>

#include "core/app.h"

namespace skv {

// The image that a picture command works on: PicTarget, or the picture of the view when that one
// belongs to another view.
ui::Image& pictureInUse(App& app);

// Why there is nothing to remove.
inline constexpr const char* notOwnPicture = "This is not an SKV screenshot and cannot be removed";

// The path of the image's own file, whether it stands or not. Fails when the image belongs to no
// add-on.
Result<std::string> PicFile(const App& app, const ui::Image& image);

// Whether the image's own file may be written and deleted: it does not leave the store of its
// add-on, whatever an alias, a "Folder:" or a link says. Success, or the reason for the user.
Outcome picFileMayChange(const App& app, const ui::Image& image);

// Whether a picture can be given to the image's add-on at all. Success, or the reason for the user.
Outcome takesPicture(const App& app, const ui::Image& image);

// Whether the image is on screen, and not on a tab or a view that does not show.
bool isSeen(const App& app, const ui::Image& image);

// Stores the picture in the image's own file, as JPEG. An older one keeps its date and attributes;
// when the save fails it stays.
Outcome savePicture(App& app, const ui::Image& image, const Pixels& picture);

// Read-only is no obstacle: the user has said that it is to go.
Outcome deletePicture(FileSystem& files, const std::string& file);

}  // namespace skv
