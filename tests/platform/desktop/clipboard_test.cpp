// Pictures in the desktop's clipboard.
#include <gtest/gtest.h>

#include <QBuffer>
#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QMimeData>

#include "platform/desktop/qt_clipboard.h"

namespace skv::test {

QByteArray encoded(int width, int height, QImage::Format format, const char* as) {
  QImage image(width, height, format);
  image.fill(QColor(10, 20, 30));
  QByteArray bytes;
  QBuffer buffer(&bytes);
  image.save(&buffer, as);
  return bytes;
}

TEST(ClipboardTest, TakesWhateverKindOfPictureIsOffered) {
  const QByteArray png = encoded(4, 3, QImage::Format_ARGB32, "png");
  const QByteArray bmp = encoded(5, 3, QImage::Format_RGB32, "bmp");
  const QByteArray huge = encoded(10001, 10000, QImage::Format_Mono, "png");
  struct Case {
    std::vector<std::pair<const char*, QByteArray>> offers;
    int width, error;
  } const cases[] = {
      {{{"image/bmp", bmp}, {"image/png", png}}, 4, 0},
      {{{"image/png", png.left(50)}, {"image/x-MS-bmp", bmp}}, 5, 0},
      {{{"image/png", huge}}, 0, err::invalidPicture},
      {{{"text/plain", png}, {"text/uri-list", "file:///picture.png"}},
       0,
       err::invalidClipboardFormat},
      {{}, 0, err::invalidClipboardFormat},
  };
  for (const Case& each : cases) {
    auto* data = new QMimeData;
    for (const auto& [type, bytes] : each.offers) data->setData(type, bytes);
    QGuiApplication::clipboard()->setMimeData(data);
    const auto picture = QtClipboard().picture();
    EXPECT_EQ(picture.outcome().number(), each.error);
    if (!picture.ok()) continue;
    EXPECT_EQ(picture.value().width, each.width);
    EXPECT_EQ((std::vector(picture.value().rows.begin(), picture.value().rows.begin() + 3)),
              (std::vector<std::uint8_t>{30, 20, 10}));
  }
}

TEST(ClipboardTest, GivesBackWhatWasPut) {
  Pixels picture{4, 2, std::vector<std::uint8_t>(24)};
  for (std::uint8_t i = 0; i < 24; ++i) picture.rows[i] = i;
  EXPECT_TRUE(QtClipboard().putPicture(picture).ok());
  const auto back = QtClipboard().picture();
  ASSERT_TRUE(back.ok());
  EXPECT_EQ(back.value().width, 4);
  EXPECT_EQ(back.value().rows, picture.rows);
  EXPECT_FALSE(QtClipboard().putPicture({}).ok());
}

}  // namespace skv::test
