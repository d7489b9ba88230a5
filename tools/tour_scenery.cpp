#include "tour_scenery.h"

#include <QInputDialog>
#include <QLineEdit>
#include <QTest>

#include "sample/sample_files.h"
#include "sample/sample_scenery.h"

namespace skv::tour {

namespace {

namespace fs = std::filesystem;

constexpr const char* harbour = "Lake Harbour";

}  // namespace

void SceneryRoad::take() {
  openView();
  moveAndSwitch();
  save();
  addToLibrary();
  editOptions();
  addToSimulator();
  fromPackage();
  install();
  import();
  deleteOnBothSides();
}

std::string SceneryRoad::database() const {
  return sample::readFile(sample_.simulator / "Scenery.cfg");
}

bool SceneryRoad::unsaved() const {
  auto* label = User::find("frmMain").findChild<QWidget*>(QStringLiteral("lblSceneryChanged"));
  return label != nullptr && label->isVisible();
}

void SceneryRoad::openView() {
  user_.stage("The Scenery Manager");
  user_.chooseMenu({"View", "Scenery Manager"}, "view-menu");
  require(User::find("frameScenery").isVisible(), "no scenery view");
  require(User::rows("lstScenery") == 58,
          "lstScenery has " + std::to_string(User::rows("lstScenery")) + " rows");
  require(User::cell("lstScenery", 1, 0) == "Zephyr Coast", "the highest layer is not on top");
  require(User::selectedRow("lstScenery") == 1, "the top row is not selected");
  require(User::text("lblSceneryTitle") == "Zephyr Coast", "its title is not shown");
  require(!unsaved(), "there is something to save at once");
  const std::vector<std::string> places{"only in the library", "in the library, in FS2002",
                                        "in the library, as Package",
                                        "in the library, in FS2002, as Package"};
  require(User::rows("lstInactScenery") == 4, "the library has other rows");
  for (int row = 1; row <= 4; ++row)
    require(User::told("lstInactScenery", row).ends_with(places[static_cast<std::size_t>(row) - 1]),
            "the places are told as " + User::told("lstInactScenery", row));
  user_.picture("scenery");
}

void SceneryRoad::moveAndSwitch() {
  user_.stage("Moving areas, by keys and by dragging, and switching them");
  user_.clickRow("lstScenery", 3);
  const std::string moved = User::cell("lstScenery", 3, 0);
  user_.pressIn("lstScenery", Qt::Key_Up, Qt::ControlModifier);
  user_.pressIn("lstScenery", Qt::Key_Up, Qt::ControlModifier);
  require(User::cell("lstScenery", 1, 0) == moved, "the row is not on top");
  require(User::selectedRow("lstScenery") == 1, "the selection left its row");
  user_.click("btnSCdn");
  require(User::cell("lstScenery", 2, 0) == moved, "the row is not the second one");
  user_.dragRow("lstScenery", 2, 5, "dragging");
  require(User::cell("lstScenery", 5, 0) == moved, "the row was not dropped below the fifth one");
  user_.tick("lstScenery", 1);
  user_.clickRow("lstScenery", 4);
  user_.pressIn("lstScenery", Qt::Key_Space);
  require(unsaved(), "nothing tells that there is something to save");
  user_.picture("scenery-moved");
}

void SceneryRoad::save() {
  user_.stage("Saving the database");
  const std::string original = database();
  user_.click("btnFSScenerySave");
  user_.allAnswered();
  require(!unsaved(), "there is still something to save");
  require(database() != original, "Scenery.cfg is as it was");
  require(sample::readFile(sample_.simulator / "Scenery.cfg.org") == original, "no true original");
  const std::string top = "Title=" + User::cell("lstScenery", 1, 0) + "\r\n";
  const std::string next = "Title=" + User::cell("lstScenery", 2, 0) + "\r\n";
  require(database().find(top) > database().find(next), "the top row is not the highest area");
  user_.picture("scenery-saved");
}

// The question for a name will come, and its offer is taken.
void SceneryRoad::expectName(const std::string& offered) {
  user_.expect("inputBox", [=, this](QWidget& window) {
    auto& box = dynamic_cast<QInputDialog&>(window);
    require(box.textValue().toStdString() == offered, "the box offers another name");
    user_.picture("scenery-name");
    QTest::keyClick(window.findChild<QLineEdit*>(), Qt::Key_Return);
  });
}

void SceneryRoad::addToLibrary() {
  user_.stage("A folder of the disk into the library");
  sample::writeFiles(sample_.downloads / harbour, sample::sceneryFiles(harbour));
  user_.openFolder("ftreeScenery", {"C:", "Downloads", harbour});
  expectName(harbour);
  user_.click("btnAddToSL");
  user_.allAnswered();
  require(User::cell("lstInactScenery", 1, 0) == harbour, "the scenery is not listed");
  require(User::selectedRow("lstInactScenery") == 1, "the new row is not selected");
  require(User::told("lstInactScenery", 1).ends_with("only in the library"),
          "its places are told as " + User::told("lstInactScenery", 1));
  const fs::path library = sample_.simulator / "SKV-Hangar/SceneryLib";
  require(fs::exists(library / "Scenery" / harbour / "Scenery/airport.bgl"), "no files arrived");
  require(fs::exists(sample_.downloads / harbour / "readme.txt"), "the source is gone");
  user_.picture("scenery-in-the-library");
}

void SceneryRoad::editOptions() {
  user_.stage("Its flattened and excluded ground, by keys alone");
  user_.expect("frmSCOptions", [this](QWidget& window) {
    const auto keys = [](const char* text) {
      // The first one opens the field that takes the others.
      for (const char* letter = text; *letter != '\0'; ++letter)
        QTest::keyClick(QApplication::focusWidget(), *letter);
      User::settle();
    };
    const auto key = [](Qt::Key which) {
      QTest::keyClick(QApplication::focusWidget(), which);
      User::settle();
    };
    window.activateWindow();
    User::settle();
    keys("512,N47 10.00,W121 00.00,N47 05.00,W120 50.00");
    user_.picture("scenery-options");
    key(Qt::Key_Tab);
    key(Qt::Key_F2);
    keys("N52 31.10,E13 22.00,N52 30.20,E13 25.00,objects");
    key(Qt::Key_Return);
    user_.click("btnOK");
  });
  user_.pressIn("lstInactScenery", Qt::Key_Return);
  user_.allAnswered();
  const std::string list = sample::readFile(sample_.simulator / "SKV-Hangar/SceneryLib/SKV_SL.lst");
  require(list.find("512,N47 10.00") != std::string::npos, "the list has no flattened ground");
  require(list.find(",objects\r\n") != std::string::npos, "the list has no excluded ground");
}

void SceneryRoad::addToSimulator() {
  user_.stage("Add to FS2002");
  user_.click("btnAddSLtoFS");
  user_.allAnswered();
  require(fs::exists(sample_.simulator / "ADDON SCENERY" / harbour / "Scenery/airport.bgl"),
          "the scenery did not arrive");
  require(User::cell("lstScenery", 1, 0) == harbour, "the new area is not on top");
  const std::string saved = database();
  require(saved.find("Title=Lake Harbour\r\n") != std::string::npos, "Scenery.cfg has no area");
  require(saved.find("512,N47 10.00") != std::string::npos, "the area flattens nothing");
  require(User::told("lstInactScenery", 1).ends_with("in FS2002"),
          "its places are told as " + User::told("lstInactScenery", 1));
  require(!unsaved(), "the new area is not saved");
  user_.picture("scenery-in-the-simulator");
}

void SceneryRoad::fromPackage() {
  user_.stage("A scenery that is packed away comes from its Package");
  user_.clickRow("lstInactScenery", User::rowOf("lstInactScenery", "Mistral Point"));
  user_.click("btnAddSLtoFS");
  user_.allAnswered();
  require(fs::exists(sample_.simulator / "ADDON SCENERY/Mistral Point/Scenery/airport.bgl"),
          "the Package's scenery did not arrive");
  require(fs::exists(sample_.simulator / "Texture/quay_Mis.bmp"), "nor its main texture");
  user_.picture("scenery-from-a-package");
}

void SceneryRoad::install() {
  user_.stage("Installing a scenery from a ZIP into the library");
  user_.expect("openFile",
               [](QWidget& window) { User::pickFile(window, "scenery_aldersund.zip"); });
  expectName("scenery_aldersund");
  user_.chooseMenu({"File", "Install Package/ZIP", "Scenery"}, "scenery-menu");
  user_.allAnswered();
  require(User::cell("lstInactScenery", 1, 0) == "scenery_aldersund", "the scenery is not listed");
  require(fs::exists(sample_.simulator /
                     "SKV-Hangar/SceneryLib/Scenery/scenery_aldersund/Scenery/airport.bgl"),
          "no files arrived");
  user_.picture("scenery-installed");
}

void SceneryRoad::import() {
  user_.stage("The simulator's sceneries into the library");
  user_.expectBox("The library lists 4 of the 37 sceneries already.", "No");
  user_.chooseMenu({"File", "Import", "Sceneries"}, "scenery-import-menu");
  user_.allAnswered();
  require(User::rows("lstInactScenery") == 6 + 33,
          "the library has " + std::to_string(User::rows("lstInactScenery")) + " rows");
  require(fs::exists(sample_.simulator / "SKV-Hangar/SceneryLib/Scenery/Aldersund/readme.txt"),
          "no files were imported");
  require(User::sees("lstScenery", User::selectedRow("lstScenery")),
          "the selected area is out of view");
  user_.picture("scenery-imported");
}

void SceneryRoad::deleteOnBothSides() {
  user_.stage("Deleting in the simulator, and in the library");
  user_.clickRow("lstScenery", User::rowOf("lstScenery", harbour));
  user_.expectBox("The scenery \"Lake Harbour\" goes from FS2002.", "Yes");
  user_.click("btnFSScenDel");
  user_.allAnswered();
  require(!fs::exists(sample_.simulator / "ADDON SCENERY" / harbour), "the folder is still there");
  require(database().find("Title=Lake Harbour\r\n") == std::string::npos,
          "the area is still in Scenery.cfg");

  user_.clickRow("lstInactScenery", User::rowOf("lstInactScenery", "Aldersund"));
  user_.expectBox("Remove selected Scenery from Library??", "Yes");
  user_.expectBox("Delete related Scenery files from harddrive as well?", "Yes");
  user_.click("btnSLDel");
  user_.allAnswered();
  require(User::rows("lstInactScenery") == 6 + 32, "the row is still there");
  require(!fs::exists(sample_.simulator / "SKV-Hangar/SceneryLib/Scenery/Aldersund"),
          "the files are still there");
  require(User::text("lblStatus").empty(), "the status line says " + User::text("lblStatus"));
  // A built-in area stays.
  user_.clickRow("lstScenery", User::rowOf("lstScenery", "Default Airports"));
  require(!User::find("btnFSScenDel").isEnabled(), "a built-in area can be deleted");
  user_.picture("scenery-deleted");
}

}  // namespace skv::tour
