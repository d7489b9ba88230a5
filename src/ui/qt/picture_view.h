// An Image on screen: its picture file scaled to the room there is, or a calm drawing in its place.
//
// Pictures are read by the loader while the window goes on. A picture that is gone stays on screen
// until the next one is there, but not for long: nobody shall take it for the new one.
#pragma once

#include <QPixmap>
#include <QTimer>
#include <QWidget>
#include <stop_token>

#include "platform/file_system.h"
#include "ui/qt/bindings.h"
#include "ui/qt/picture_loader.h"

namespace skv::ui::qt {

class PictureView : public QWidget {
 public:
  // `placeholder` is the drawing shown when there is no picture.
  PictureView(Bindings& bindings, Form& form, Image& image, const FileSystem& files,
              const QString& accessibleName, const QString& placeholder);
  ~PictureView() override;
  // A label over the foot of the picture.
  void setOverlay(QWidget* label);
  // Whether all that is to be seen is on screen.
  bool settled() const { return !loading_; }

  QSize sizeHint() const override { return {320, 200}; }
  QSize minimumSizeHint() const override { return {80, 60}; }

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void refresh();
  // Asks for the picture that is wanted now, or whether its file is still the one that is shown.
  void look();
  void stopLoading();
  void arrived(const std::shared_ptr<const LoadedPicture>& picture);
  void take(const LoadedPicture& picture);
  void describe();
  void paintPlaceholder(QPainter& painter);

  Image& image_;
  const FileSystem& files_;
  PictureLoader& loader_;
  QString placeholder_;
  Binding* binding_;
  bool loading_ = false;
  WantedPicture wanted_;    // what is being loaded, while it is
  std::stop_source stop_;   // of that
  WantedPicture shown_;     // what picture_ shows, or could not show
  std::string shownState_;  // of its file
  QPixmap picture_;
  bool outdated_ = false;  // picture_ was taken away before the next one came
  QTimer patience_;        // until then
};

}  // namespace skv::ui::qt
