// An Image on screen: its picture file scaled to the room there is, or a calm drawing in its place.
#pragma once

#include <QDateTime>
#include <QImage>
#include <QPixmap>
#include <QWidget>

#include "platform/file_system.h"
#include "ui/qt/bindings.h"

class QVBoxLayout;

namespace skv::ui::qt {

class PictureView : public QWidget {
 public:
  // `placeholder` is the drawing shown when there is no picture.
  PictureView(Bindings& bindings, Form& form, Image& image, const FileSystem& files,
              const QString& accessibleName, const QString& placeholder);
  // A label over the foot of the picture.
  void setOverlay(QWidget* label);

  QSize sizeHint() const override { return {320, 200}; }
  QSize minimumSizeHint() const override { return {80, 60}; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  void refresh();
  void load();
  void readFile();
  void showMemory();
  void paintPlaceholder(QPainter& painter);

  Image& image_;
  const FileSystem& files_;
  QString placeholder_;
  Binding* binding_;
  // What picture_ shows, or could not show: a file as it stood at that time, or a picture in
  // memory.
  std::string loaded_;
  QDateTime fileTime_;
  qint64 fileLength_ = -1;
  std::shared_ptr<const Pixels> shownPixels_;  // picture_ looks at its bytes
  QImage picture_;
  QPixmap scaled_;
};

}  // namespace skv::ui::qt
