#include "tour_pictures.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QTest>
#include <stdexcept>

#include "sample/sample_files.h"
#include "sample/sample_pictures.h"

namespace skv::tour {

namespace {

namespace fs = std::filesystem;

constexpr const char* swiftlet = "Corvane C-410 Swiftlet";

// What somebody has copied from a web page.
QImage copied() {
  QImage image(480, 300, QImage::Format_RGB32);
  QPainter painter(&image);
  QLinearGradient evening(0, 0, 0, 300);
  evening.setColorAt(0, QColor(40, 44, 92));
  evening.setColorAt(1, QColor(240, 150, 90));
  painter.fillRect(image.rect(), evening);
  painter.setPen(Qt::white);
  painter.drawText(image.rect(), Qt::AlignCenter, QStringLiteral("Swiftlet at dusk"));
  return image;
}

}  // namespace

void PictureRoad::take() {
  user_.press(Qt::Key_F, Qt::ControlModifier);
  look();
  paste();
  fromFile();
  remove();
}

void PictureRoad::choose(const std::string& image, const std::string& entry,
                         const std::string& pictureName) {
  QTest::mouseClick(&User::find(image), Qt::RightButton);
  User::settle();
  auto& menu = User::find<QMenu>("mnuPic");
  if (!pictureName.empty()) user_.picture(pictureName);
  for (QAction* action : menu.actions())
    if (action->text().remove(QLatin1Char('&')).toStdString() == entry) {
      require(action->isEnabled(), "the menu entry " + entry + " is disabled");
      QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(action).center());
      User::settle();
      return;
    }
  throw Wrong("there is no menu entry " + entry);
}

void PictureRoad::look() {
  user_.stage("The picture of an aircraft's type, where it has none of its own");
  user_.clickRow("lstAircraft", User::rowOf("lstAircraft", "A Tern"));
  require(User::find("lblACSpecimen").isVisible(), "the specimen is not told as one");
  user_.picture("specimen");

  user_.stage("A picture at its full size");
  user_.clickRow("lstAircraft", User::rowOf("lstAircraft", swiftlet));
  user_.clickRow("lstACVersions", 1);
  user_.expect("frmShowPic", [this](QWidget& viewer) {
    user_.picture("viewer");
    QTest::keyClick(viewer.focusWidget(), Qt::Key_Return);
  });
  QTest::mouseClick(&User::find("imgAircraft"), Qt::LeftButton);
  user_.allAnswered();
  require(!User::shows("frmShowPic"), "Enter does not close the viewer");
}

void PictureRoad::paste() {
  user_.stage("A picture from the clipboard");
  QGuiApplication::clipboard()->setImage(copied());
  choose("imgAircraft", "Picture from Clipboard", "picture-menu");
  user_.allAnswered();
  const fs::path folder = sample_.simulator / "aircraft/corvane_c410/texture.aurelis";
  require(sample::readFile(folder / "SKVscrn.jpg").starts_with("\xff\xd8"), "no JPEG was stored");
  require(fs::exists(folder / "c410.jpg"), "the author's picture is gone");
  user_.picture("pasted");
}

void PictureRoad::fromFile() {
  user_.stage("A picture of the panel from a file");
  const fs::path file = sample_.downloads / "cockpit.jpg";
  sample::writeFile(file, sample::panelJpeg("cockpit"));
  user_.clickTab("tabAddon", "Panel");
  user_.expect("openFile", [&](QWidget& dialog) {
    auto* name = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    if (name == nullptr) throw std::runtime_error("the dialog has no field for the file");
    name->setText(QString::fromStdString(file.string()));
    QTest::keyClick(name, Qt::Key_Return);
  });
  choose("imgPanel", "Picture from File...");
  user_.allAnswered();
  require(fs::exists(sample_.simulator / "aircraft/corvane_c410/panel/SKVscrn.jpg"),
          "no picture of the panel was stored");
  user_.picture("panel-picture");
  user_.clickTab("tabAddon", "Info");
}

void PictureRoad::remove() {
  user_.stage("The author's picture again");
  user_.expectBox("Delete this picture?", "Yes");
  choose("imgAircraft", "Remove this picture");
  user_.allAnswered();
  require(!fs::exists(sample_.simulator / "aircraft/corvane_c410/texture.aurelis/SKVscrn.jpg"),
          "the picture is still there");
  user_.picture("picture-removed");
}

}  // namespace skv::tour
