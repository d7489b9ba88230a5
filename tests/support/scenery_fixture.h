// A run of the program with the Scenery Manager open, over a library C:\Lib\ and the Packages
// C:\Packs\Scenery\.
#pragma once

#include "core/profile.h"
#include "scenery/scenery_view.h"
#include "support/program_fixture.h"

namespace skv::test {

class SceneryTest : public ProgramTest {
 protected:
  SceneryTest() {
    app.SceneryLib = "C:\\Lib\\";
    app.SceneryPacksPath = "C:\\Packs\\Scenery\\";
    drive.clear("C:\\Packs\\Scenery");
    clearLibrary();
    putDatabase();
    open();
  }
  void putLibrary(const std::string& lines) {
    drive.write(library, coded(lines));
    open();
  }
  void clearLibrary() {
    for (const char* folder : {"C:\\Lib", "C:\\Lib\\Scenery", "C:\\Lib\\Main"}) drive.clear(folder);
  }

  static std::string area(int number, const std::string& title, const std::string& layer,
                          const std::string& folder, const std::string& more = "") {
    return "[Area.00" + std::to_string(number) + "]\r\nTitle=" + title + "\r\nLayer=" + layer +
           "\r\nLocal=" + folder + "\r\nActive=TRUE\r\n" + more;
  }
  void putDatabase() { drive.write(cfg, database); }
  // What is not saved is lost.
  void open() { mnuViewFSScenery_Click(app); }
  // Titles from the top, those of active areas with "+".
  std::string areas() const {
    std::string text;
    for (int row = 1; row <= form.lstScenery.count(); ++row)
      text += (row > 1 ? " " : "") + form.lstScenery.text(row) +
              (form.lstScenery.checked(row) ? "+" : "");
    return text;
  }
  // The titles in the file, by their numbers.
  std::string areasInFile() const {
    std::string text;
    for (int number = 1; number <= 9; ++number)
      if (const auto title = valueOf("Area.00" + std::to_string(number), "Title"); !title.empty())
        text += (text.empty() ? "" : " ") + title;
    return text;
  }
  std::string valueOf(const std::string& section, const std::string& key) const {
    return ReadProfile(disk, CodePage(), cfg, section, key);
  }
  Lines listed() const { return rows(form.lstInactScenery); }

  const std::string cfg = "C:\\FS\\Scenery.cfg", org = "C:\\FS\\Scenery.cfg.org",
                    cache = "C:\\FS\\SKV_SC.lst", library = "C:\\Lib\\SKV_SL.lst";
  // Three areas; on screen Alps, World, Rome.
  const std::string database =
      "[General]\r\nCache_Size=7\r\nClean_On_Exit=TRUE\r\n" + area(1, "World", "5", "Scenery") +
      area(4, "Rome", "2", "Addon Scenery\\Rome", "Flatten=a\r\nFlatten.1=b\r\n") +
      area(9, "Alps", "7", "ADDON SCENERY\\Alps");
};

}  // namespace skv::test
