// The viewer: opened by the picture, closed by hand and by keys.
#include "ui/qt/window_fixture.h"

namespace skv::test {
namespace {

TEST_F(WindowTest, TheViewerShowsThePictureAtItsSizeAndCloses) {
  showMain();
  const auto show = [&](int width, int height, const std::function<void(QWidget&)>& act) {
    Pixels pixels{width, height, {}};
    pixels.rows.assign(pixels.rowBytes() * static_cast<std::size_t>(height), 200);
    app.frmMain.imgAircraft.pixels = std::make_shared<const Pixels>(std::move(pixels));
    bool seen = false;
    inDialog(app.frmShowPic, [&] {
      seen = true;
      act(*find<QWidget>("imgShowPic"));
      EXPECT_FALSE(app.frmShowPic.visible);
    });
    ui::raise(app.frmMain.imgAircraft.click);
    EXPECT_TRUE(seen);
  };
  show(640, 200, [](QWidget& picture) {
    EXPECT_EQ(picture.window()->size(), QSize(640, 200));
    EXPECT_EQ(picture.window()->windowTitle(), "FS Skyvault - Show Picture");
    QTest::mouseClick(&picture, Qt::LeftButton);
  });
  show(8, 8, [](QWidget& picture) {
    const QImage seen = picture.grab().toImage();
    EXPECT_EQ(seen.pixelColor(picture.rect().center()), QColor(200, 200, 200));
    EXPECT_NE(seen.pixelColor(4, 4), QColor(200, 200, 200)) << "it is not made larger";
    QTest::keyClick(picture.window()->focusWidget(), Qt::Key_Escape);
  });
  show(6000, 100, [](QWidget& picture) {
    EXPECT_LE(picture.width(), picture.screen()->availableSize().width());
    QTest::keyClick(picture.window()->focusWidget(), Qt::Key_Enter);
  });
}

}  // namespace
}  // namespace skv::test
