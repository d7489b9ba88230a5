// Pictures on screen: which one is shown when, and what a user's hands do to them.
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QMenu>
#include <QMimeData>
#include <QSemaphore>
#include <QUrl>
#include <filesystem>
#include <mutex>

#include "support/environment_variable.h"
#include "ui/qt/picture_view.h"
#include "ui/qt/window_fixture.h"

namespace skv::test {

using namespace std::chrono_literals;
using ui::qt::PictureView;

// Pictures of one colour, in whose place the path stands: "ff0000". Each waits to be let through.
class SlowReader : public PictureReader {
 public:
  Result<Pixels> read(std::string_view path, int, std::stop_token stop) const override {
    {
      const std::lock_guard lock(mutex);
      begun.emplace_back(path);
    }
    while (!gate.tryAcquire(1, 5))
      if (stop.stop_requested()) return Outcome::failure(err::cancelled);
    if (stop.stop_requested()) {
      gate.release();  // it was meant for the one that is wanted
      return Outcome::failure(err::cancelled);
    }
    if (path == "broken") return Outcome::failure(err::invalidPicture);
    const int colour = std::stoi(std::string(path), nullptr, 16);
    Pixels pixels{4, 4, {}};
    for (int i = 0; i < 16; ++i)
      for (const int shift : {0, 8, 16})
        pixels.rows.push_back(static_cast<std::uint8_t>(colour >> shift));
    return pixels;
  }
  std::string state(std::string_view path) const override { return std::string(path) + version; }

  mutable QSemaphore gate;
  mutable std::mutex mutex;
  mutable std::vector<std::string> begun;
  std::string version = "1";
};

class PictureViewTest : public DiskTest {
 protected:
  PictureViewTest() {
    form.visible = true;
    view = new PictureView(*bindings, form, image, disk, "Picture", "aircraft");
    view->resize(200, 200);
    view->show();
  }
  ~PictureViewTest() override {
    ui::qt::Bindings::detachAll(*view);
    bindings.reset();
    delete view;
  }

  QRgb middle() { return view->grab().toImage().pixel(100, 100) & 0xFFFFFF; }
  // Whether the middle of the view has the colour within the time.
  bool shows(QRgb colour) {
    return QTest::qWaitFor([&] { return middle() == colour; }, 3000);
  }

  SlowReader reader;
  std::unique_ptr<ui::qt::Bindings> bindings = std::make_unique<ui::qt::Bindings>(reader);
  ui::Form form{"form"};
  ui::Image image{"image"};
  PictureView* view;
};

TEST_F(PictureViewTest, TheNewestWishWinsAndAnOldPictureDoesNotStay) {
  reader.gate.release(1);
  image.picture = "ff0000";
  ASSERT_TRUE(shows(0xFF0000));
  EXPECT_EQ(view->accessibleDescription(), "ff0000");

  image.picture = "00ff00";
  QTest::qWait(20);
  EXPECT_EQ(middle(), 0xFF0000) << "a quick picture follows without a gap";
  EXPECT_TRUE(QTest::qWaitFor([&] { return middle() != 0xFF0000; }, 1000));
  for (const char* path : {"000001", "000002", "0000ff"}) {
    image.picture = path;
    QCoreApplication::processEvents();
  }
  reader.gate.release(1);
  EXPECT_TRUE(shows(0x0000FF));

  reader.gate.release(1);
  image.picture = "broken";
  EXPECT_TRUE(QTest::qWaitFor(
      [&] { return view->accessibleDescription() == "This picture cannot be shown"; }, 3000));
  image.picture = "";
  QCoreApplication::processEvents();
  EXPECT_EQ(view->accessibleDescription(), "No picture");
}

TEST_F(PictureViewTest, AReplacedFileIsShownAnewAndAnUnchangedOneNotReadAgain) {
  reader.gate.release(1);
  image.picture = "ff0000";
  ASSERT_TRUE(shows(0xFF0000));
  for (int i = 0; i < 5; ++i) {
    view->update();
    QTest::qWait(10);
  }
  EXPECT_EQ(reader.begun.size(), 1U);
  reader.version = "2";
  reader.gate.release(1);
  view->update();
  EXPECT_TRUE(QTest::qWaitFor([&] { return reader.begun.size() == 2; }, 3000));
  EXPECT_TRUE(QTest::qWaitFor([&] { return view->settled(); }, 3000));

  const std::vector<std::uint8_t> blue{255, 0, 0, 0};
  image.pixels = std::make_shared<const Pixels>(Pixels{1, 1, blue});
  EXPECT_TRUE(shows(0x0000FF)) << "a picture in memory stands in the file's place";
  image.pixels = nullptr;
  reader.gate.release(1);
  EXPECT_TRUE(shows(0xFF0000));
}

TEST_F(PictureViewTest, TheEndDoesNotWaitForAPictureThatIsBeingRead) {
  image.picture = "ff0000";
  ASSERT_TRUE(QTest::qWaitFor([&] {
    const std::lock_guard lock(reader.mutex);
    return !reader.begun.empty();
  }));
}

TEST_F(PictureViewTest, OneDroppedFileIsTakenAndStaysWhereItIs) {
  drive.write("C:\\My Pictures\\a.jpg", "");
  const QUrl file =
      QUrl::fromLocalFile(QString::fromStdString(drive.native("C:\\My Pictures\\a.jpg")));
  std::vector<std::string> dropped;
  const auto drop = [&](const QList<QUrl>& urls) {
    QMimeData data;
    data.setUrls(urls);
    QDragEnterEvent enter({9, 9}, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, {});
    enter.ignore();
    QApplication::sendEvent(view, &enter);
    if (!enter.isAccepted()) return false;
    EXPECT_EQ(enter.dropAction(), Qt::CopyAction);
    QDropEvent event({9, 9}, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(view, &event);
    QTest::qWait(1);
    return true;
  };
  QCoreApplication::processEvents();
  EXPECT_FALSE(view->acceptDrops());
  image.fileDropped = [&](const std::string& path) { dropped.push_back(path); };
  image.changed();
  QCoreApplication::processEvents();
  EXPECT_TRUE(view->acceptDrops());
  EXPECT_TRUE(drop({file}));
  EXPECT_EQ(dropped, std::vector<std::string>{"C:\\My Pictures\\a.jpg"});
  drive.write("C:\\b.jpg", "whole");
  const std::string odd = drive.native("C:\\My Pictures") + "/14:30 b.jpg";
  std::filesystem::rename(drive.native("C:\\b.jpg"), odd);
  const Variable temporary("TMPDIR", drive.native("C:\\"));
  image.fileDropped = [&](const std::string& path) { dropped.push_back(drive.read(path)); };
  EXPECT_TRUE(drop({QUrl::fromLocalFile(QString::fromStdString(odd))}));
  EXPECT_EQ(dropped.back(), "whole") << "of a name that Windows does not have";
  EXPECT_FALSE(drop({file, file}));
  EXPECT_FALSE(drop({QUrl("https://example.invalid/a.jpg")}));
  form.enabled = false;
  EXPECT_FALSE(drop({file}));
}

TEST_F(WindowTest, AMenuThatAKeyAsksForOpensAtThePicture) {
  showMain();
  auto& image = app.frmMain.imgAircraft;
  app.frmMain.mnuPicDel.click = [] {};
  image.mouseDown = [this](ui::MouseButton) { windows.popUp(app.frmMain.mnuPic); };
  app.frmMain.mnuPic.caption = "Picture of the panel";
  image.visible = true;
  image.changed();
  settle();
  auto* view = find<QWidget>("imgAircraft");
  ASSERT_NE(view, nullptr);
  QCursor::setPos(mainWindow()->mapToGlobal(QPoint(1, 1)));
  const QPoint place = view->mapToGlobal(view->rect().center());
  QContextMenuEvent asked(QContextMenuEvent::Keyboard, view->rect().center(), place);
  QApplication::sendEvent(view, &asked);
  auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  ASSERT_NE(menu, nullptr);
  EXPECT_TRUE(menu->geometry().adjusted(-9, -9, 9, 9).contains(place)) << "not at the mouse";
  EXPECT_EQ(menu->actions().first()->text(), "Picture of the panel") << "says what it is about";
  int closed = 0;
  app.frmMain.mnuPic.closed = [&] { ++closed; };
  menu->close();
  EXPECT_EQ(closed, 0) << "an entry does first what it is there for";
  EXPECT_TRUE(QTest::qWaitFor([&] { return closed == 1; }, 3000));
}

TEST_F(WindowTest, TheViewerShowsThePictureAtItsSizeOrTheScreens) {
  showMain();
  for (const int width : {640, 6000}) {
    Pixels pixels{width, 200, {}};
    pixels.rows.assign(pixels.rowBytes() * 200, 200);
    app.frmMain.imgAircraft.pixels = std::make_shared<const Pixels>(std::move(pixels));
    QSize seen;
    int most = 0;
    inDialog(app.frmShowPic, [&] {
      const auto* window = find<QWidget>("frmShowPic");
      seen = window->size();
      most = window->screen()->availableSize().width();
    });
    ui::raise(app.frmMain.imgAircraft.click);
    if (width == 640)
      EXPECT_EQ(seen, QSize(640, 200));
    else
      EXPECT_TRUE(seen.width() > 640 && seen.width() <= most);
  }
}

}  // namespace skv::test
