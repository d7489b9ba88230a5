#include <algorithm>
#include <chrono>

#include "base/paths.h"
#include "pictures/picture_fixture.h"
#include "pictures/picture_lookup.h"
#include "support/every_call.h"

namespace skv::test {

using ui::Answer;

TEST_F(PictureTest, APictureFromTheClipboardBelongsToTheImageOfTheLastRightClick) {
  put({other + "panel.cfg", "C:\\FS\\ADDON SCENERY\\A\\a.bgl", "C:\\Lib\\Scenery\\B\\b.bgl",
       "C:\\Picked\\x"});
  pointPanelAt("other\\panel");
  paste(form.imgAircraft);
  ui::raise(form.imgAircraft.mouseDown, ui::MouseButton::left);
  ui::raise(form.lstACVersions.mouseDown, ui::MouseButton::right);
  EXPECT_EQ(app.PicTarget, &form.imgPanel);
  click(form.mnuPicClip);
  EXPECT_TRUE(windows.boxes.empty());
  ui::raise(form.mnuPic.closed);
  clipboard.held = plain(50, 30);
  windows.answers = {Answer::no, Answer::yes};
  ui::raise(form.mnuPicClip.click);  // by its shortcut: the panel is on a tab that does not show
  EXPECT_EQ(sizeOf(own), "40x30") << "the user's own picture stays until a Yes";
  EXPECT_EQ(windows.boxes.back().defaultButton, ui::DefaultButton::no);
  expectTold("Replace your picture \"" + own);
  ui::raise(form.mnuPicClip.click);
  EXPECT_EQ(sizeOf(own), "50x30");
  ui::raise(form.tabAddon.click, 1);
  ui::raise(form.imgPanel.mouseDown, ui::MouseButton::right);
  ui::raise(form.mnuPic.closed);
  windows.answers = {Answer::yes};
  ui::raise(form.mnuPicClip.click);
  EXPECT_EQ(sizeOf(other + ownPictureName), "50x30") << "it shows now";
  EXPECT_TRUE(holds(windows.boxes.back().text, "All aircraft that use this panel"));
  ui::raise(form.tabAddon.click, 0);
  windows.answers = {Answer::yes};
  paste(form.imgAircraft);
  windows.boxes.clear();
  openSceneries({"ADDON SCENERY\\A"}, "B|x\\B\r\n");
  clipboard.held = plain(40, 30);
  ui::raise(form.mnuPicClip.click);  // the aircraft is not in this view
  select(form.lstInactScenery, 1);
  EXPECT_EQ(form.imgScenery.picture, "");
  paste(form.imgScenery);
  form.ftreeScenery.folder = "C:\\Picked\\";
  ui::raise(form.ftreeScenery.change);
  paste(form.imgScenery);
  for (const std::string& file :
       {own, std::string("C:\\FS\\ADDON SCENERY\\A\\SKVscrn.jpg"),
        std::string("C:\\Lib\\Scenery\\B\\SKVscrn.jpg"), std::string("C:\\Picked\\SKVscrn.jpg")})
    EXPECT_EQ(sizeOf(file), "40x30") << file;
  EXPECT_EQ(form.imgScenery.picture, "C:\\Picked\\SKVscrn.jpg");
  select(form.lstScenery, 1);
  EXPECT_EQ(form.imgScenery.picture, "C:\\FS\\ADDON SCENERY\\A\\SKVscrn.jpg");
  EXPECT_TRUE(windows.boxes.empty());

  clipboard.held.reset();
  click(form.mnuPicClip);
  expectTold("No valid picture in Clipboard!");
}

TEST_F(PictureTest, NothingIsWrittenOutsideTheStore) {
  put({"C:\\Other\\x", "C:\\FS\\aircraft\\far\\x", plane + "texture.abc\\x"});
  drive.link(plane + "panel.link", "C:\\Other");
  drive.link("C:\\FS\\aircraft\\gone", "C:\\Other");
  drive.link("C:\\FS\\ADDON", "C:\\Other");
  const auto refuses = [&](ui::Image& image, const std::string& what) {
    EXPECT_FALSE(offers(image)) << what;
    EXPECT_NE(form.mnuPicFile.hint, "") << "a greyed entry says why";
    paste(image);
    expectTold("Failed to save the picture to the file: '");
    EXPECT_EQ(drive.tree("C:\\Other"), std::vector<std::string>{"x"}) << what;
  };
  for (const char* const alias : {"..\\..\\Other", "C:\\Other", "far\\..\\..\\..\\Other", "gone",
                                  "plane\\panel.link", "missing"}) {
    pointPanelAt(alias);
    refuses(form.imgPanel, alias);
  }
  drive.remove(textures);
  drive.link(withoutBackslash(textures), "C:\\Other");
  open();
  refuses(form.imgAircraft, "a link in the aircraft");
  for (const char* const folder : {"..\\Other", "C:\\Other", "ADDON", "x\\..\\..\\Other", ""}) {
    openSceneries({folder}, "Up|x\\..\r\n");
    refuses(form.imgScenery, folder);
  }
  select(form.lstInactScenery, 1);
  refuses(form.imgScenery, "a leaf that leads up");
}

TEST_F(PictureTest, AFileOfAnyFormatIsStoredAsJpegAndABrokenOneIsTold) {
  // A bitmap of 2 x 1 pixels, whatever its name says.
  std::string bitmap("BM\x3e\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\2\0\0\0\1\0\0\0\1\0\x18", 29);
  bitmap.resize(62, '\0');
  drive.write("C:\\In\\a.gif", bitmap);
  windows.picks = {"C:\\In\\a.gif"};
  click(form.mnuPicFile);
  EXPECT_EQ(windows.fileDialogs.back().filter,
            "Pictures|*.jpg;*.jpeg;*.png;*.webp;*.gif;*.bmp;*.wmf");
  EXPECT_EQ(sizeOf(own), "2x1");
  EXPECT_TRUE(drive.read(own).starts_with("\xff\xd8"));
  EXPECT_EQ(drive.read("C:\\In\\a.gif"), bitmap);
  EXPECT_EQ(form.imgAircraft.picture, own);
  ui::raise(form.mnuPicFile.click);  // and cancels
  EXPECT_TRUE(windows.boxes.empty());

  ui::raise(form.imgPanel.fileDropped, "C:\\In\\a.gif");
  EXPECT_EQ(sizeOf(panel + ownPictureName), "2x1");
  put({"C:\\In\\bad.jpg"});
  ui::raise(form.imgPanel.fileDropped, "C:\\In\\bad.jpg");
  expectTold("Error #481\r\n");
  expectIdle();
}

TEST_F(PictureTest, TheWindowGoesOnWhileAPictureIsReadAndItsEndIsNotHeldUp) {
  // A metafile of so many large ellipses that they take many seconds.
  std::string endless("\1\0\x09\0\0\3\0\0\0\0\0\0\7\0\0\0\0\0\5\0\0\0\x0c\2\x10\x27\x10\x27", 28);
  for (int i = 0; i < 200000; ++i) endless.append("\7\0\0\0\x18\4\x10\x27\x10\x27\0\0\0\0", 14);
  drive.write("C:\\In\\a.wmf", endless.append("\3\0\0\0\0\0", 6));
  int yields = 0;
  windows.onYield = [&] {
    EXPECT_FALSE(form.enabled);
    app.ending = ++yields >= 3;
  };
  const auto begin = std::chrono::steady_clock::now();
  ui::raise(form.imgAircraft.fileDropped, "C:\\In\\a.wmf");
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(8));
  EXPECT_GE(yields, 3);
  EXPECT_FALSE(drive.exists(own));
  EXPECT_TRUE(windows.boxes.empty());
  expectIdle();
}

TEST_F(PictureTest, AFailedSaveLeavesTheOldPicture) {
  const std::string old = "the old one";
  const auto prepare = [&] {
    drive.clear(textures);
    drive.write(own, old);
    EXPECT_TRUE(disk.setAttributes(own, {.readOnly = true}).ok());
    windows.boxes.clear();
    open();
  };
  const auto check = [&](bool struck) {
    const bool whole = drive.read(own) == old;
    EXPECT_TRUE(whole || sizeOf(own) == "40x30");
    EXPECT_TRUE(struck || !whole);
    EXPECT_TRUE(disk.attributes(own).value().readOnly);
    EXPECT_TRUE(!whole || windows.boxes.size() < 2 ||
                holds(windows.boxes[1].text, "Failed to save the picture"));
  };
  for (const Ending ending : {Ending::fullDisk, Ending::failedLook, Ending::emptyFiles})
    EXPECT_GT(forEveryCall(
                  files, ending, prepare,
                  [&] {
                    windows.answers = {Answer::yes};
                    paste(form.imgAircraft);
                  },
                  check),
              0);
}

TEST_F(PictureTest, RemovesItsOwnPictureAndNoOther) {
  const auto remove = [&](Answer answer) {
    windows.answers = {answer};
    windows.boxes.clear();
    click(form.mnuPicDel);
    return windows.boxes.size();
  };
  put({textures + "came.jpg"});
  open();
  EXPECT_FALSE(offers(form.imgAircraft) && form.mnuPicDel.enabled);
  EXPECT_TRUE(holds(form.mnuPicDel.hint, "not an SKV screenshot"));
  EXPECT_EQ(form.mnuPicFile.hint, "");
  EXPECT_EQ(remove(Answer::yes), 1U);
  expectTold("This is not an SKV screenshot and cannot be removed");

  put({own});
  EXPECT_TRUE(disk.setAttributes(own, {.readOnly = true}).ok());
  EXPECT_TRUE(offers(form.imgAircraft) && form.mnuPicDel.enabled);
  EXPECT_EQ(remove(Answer::no), 1U);
  EXPECT_EQ(windows.boxes.back().defaultButton, ui::DefaultButton::no);
  files.failWhen("deleteFile", own, err::permissionDenied);
  EXPECT_EQ(remove(Answer::yes), 2U);
  EXPECT_TRUE(holds(windows.boxes.back().text, "Error #70\r\n"));
  EXPECT_TRUE(files.heal() && disk.attributes(own).value().readOnly);
  files.failWhen("attributes", own, err::deviceIo);
  EXPECT_EQ(remove(Answer::yes), 1U);
  expectTold("Error #57\r\n");
  files.heal();
  form.txtACTitle.text = "edited";  // which keeps the click from filling the tabs
  EXPECT_EQ(remove(Answer::yes), 1U);
  EXPECT_FALSE(drive.exists(own));
  EXPECT_EQ(form.imgAircraft.picture, textures + "came.jpg");
}

TEST_F(PictureTest, ASnapshotIsTheWindowWithoutItsMargins) {
  screen.window = plain(120, 200, 10);
  Pixels& window = *screen.window;
  for (int y = 45; y < 155; ++y)
    std::fill_n(window.rows.begin() + y * static_cast<int>(window.rowBytes()) + 30, 300, 200);
  click(form.mnuPicSnap);
  EXPECT_EQ(screen.activated, (std::vector<std::string>(2, "Microsoft Flight Simulator 2002")));
  const auto saved = pictures.read(own);
  ASSERT_EQ(sizeOf(own), "100x110");
  for (const std::uint8_t value : saved.value().rows) EXPECT_NEAR(value, 200, 8);
  expectIdle();

  const auto fails = [&](const std::string& told) {
    windows.boxes.clear();
    click(form.mnuPicSnap);
    ASSERT_EQ(windows.boxes.size(), 2U);
    EXPECT_TRUE(holds(windows.boxes[1].text, told));
    EXPECT_EQ(sizeOf(own), "100x110");
    expectIdle();
  };
  screen.window = plain(20, 200);
  fails("too small");
  screen.window = plain(200, 90);
  fails("too small");
  windows.onYield = [&] { screen.window.reset(); };  // the simulator ends meanwhile
  fails("Cannot activate FS2002 Window!");
  fails("Cannot activate FS2002 Window!");
}

TEST_F(PictureTest, WhatIsGoneAfterAYieldIsLeftAlone) {
  put({plane + "texture.abc\\x"});
  form.lstACVersions.select(2);
  click(form.lstACVersions);
  windows.onYield = [&] {
    if (windows.yields != 500) return;
    form.lstAircraft.clear();
    form.lstACVersions.clear();
  };
  windows.yields = 0;
  paste(form.imgAircraft);
  EXPECT_EQ(sizeOf(plane + "texture.abc\\SKVscrn.jpg"), "40x30");
  EXPECT_EQ(form.lstACVersions.selected(), 0);
}

}  // namespace skv::test
