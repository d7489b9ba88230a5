#include "pictures/picture_fixture.h"

namespace skv::test {

TEST_F(PictureTest, AnAircraftShowsTheFirstThatThereIs) {
  const std::string installed = "C:\\Share\\ACPics\\P-1.jpg",
                    specimen = "C:\\Program\\ACPics\\p-1.JPG";
  app.platform.environment.dataFolder = "C:\\Share\\";
  // From the last place that is looked at to the first.
  for (const std::string& picture :
       {installed, specimen, plane + "top.png", textures + "x.WebP", plane + "top.jpg",
        textures + "b.gif", textures + "Z.Jpg", textures + "a.JPG", own}) {
    put({picture});
    open();
    EXPECT_EQ(form.imgAircraft.picture, picture);
    EXPECT_EQ(form.lblACSpecimen.visible, picture == specimen || picture == installed);
  }
  form.lstACVersions.select(2);
  click(form.lstACVersions);
  EXPECT_EQ(form.imgAircraft.picture, plane + "top.jpg") << "of a folder without textures";
  put({plane + "texture.abc\\.jpg", plane + "texture.abc\\x.jpeg", plane + "texture.abc\\k.jpg"});
  click(form.lstACVersions);
  EXPECT_EQ(form.imgAircraft.picture, plane + "texture.abc\\k.jpg");
  EXPECT_TRUE(disk.setAttributes(plane + "texture.abc\\k.jpg", {.hidden = true}).ok());
  files.failWhen("list", plane, err::deviceIo);
  click(form.lstACVersions);
  EXPECT_EQ(form.imgAircraft.picture, "");
}

TEST_F(PictureTest, WhatOthersWroteLeadsToNoOtherFolder) {
  put({"C:\\FS\\x.jpg", "C:\\Program\\x.jpg", "C:\\Program\\ACPics\\P-1.jpg", "C:\\Other\\x.jpg",
       textures + "deep\\x.jpg"});
  for (const char* const type : {"..\\x", "*", "P?1", "..\\..\\Other\\x", "C:\\Other\\x"}) {
    writeAircraft("", "", type);
    open();
    EXPECT_EQ(form.imgAircraft.picture, "") << type;
  }
  for (const char* const texture : {"\\..\\..\\..", "x\\..\\..\\..\\..\\Other", "*", "con", "a:b",
                                    "x\\..\\..\\texture\\deep"}) {
    writeAircraft(texture, "", "none");
    open();
    EXPECT_EQ(form.imgAircraft.picture, "") << texture;
    EXPECT_FALSE(offers(form.imgAircraft)) << texture;
  }
}

TEST_F(PictureTest, APanelShowsItsOwnPictureAndALibraryRowTheFirst) {
  put({panel + "a.webp", panel + "b.png"});
  open();
  EXPECT_EQ(form.imgPanel.picture, panel + "b.png");
  put({panel + "a.jpg", own, other + "panel.cfg", other + "a.jpg", other + "SKVscrn.jpg"});
  open();
  EXPECT_EQ(form.imgPanel.picture, panel + "a.jpg");
  pointPanelAt("OTHER\\panel");
  EXPECT_EQ(form.imgPanel.picture, "C:\\FS\\aircraft\\OTHER\\panel\\SKVscrn.jpg");
  form.lstPanel.select(1);
  click(form.lstPanel);
  EXPECT_EQ(form.imgPanel.picture, other + "a.jpg");
  EXPECT_EQ(app.PanelPicDir, other) << "what shows is what a command works on";
  form.lstAircraft.clear();
  click(form.lstAircraft);
  EXPECT_TRUE(form.imgPanel.picture == "" && form.imgAircraft.picture == "");
  EXPECT_FALSE(offers(form.imgAircraft) || offers(form.imgPanel));
}

TEST_F(PictureTest, TheViewerShowsWhatTheImageShows) {
  int opened = 0;
  auto& viewer = app.frmShowPic;
  windows.onShow[&viewer] = [&] {
    ++opened;
    ASSERT_TRUE(viewer.imgShowPic.pixels.get());
    EXPECT_EQ(viewer.imgShowPic.pixels.get()->width, 40);
    click(viewer.imgShowPic);
  };
  click(form.imgAircraft);
  put({own});
  open();
  click(form.imgAircraft);
  EXPECT_EQ(opened, 0);
  EXPECT_TRUE(holds(form.lblStatus.notice, "cannot be shown"));
  windows.answers = {ui::Answer::yes};
  paste(form.imgAircraft);
  click(form.imgAircraft);
  EXPECT_EQ(opened, 1);
  EXPECT_FALSE(viewer.visible || viewer.imgShowPic.pixels.get());
}

}  // namespace skv::test
