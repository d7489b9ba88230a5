// Room for a content that may be larger than the screen: it scrolls only there.
#pragma once

#include <QScrollArea>

namespace skv::ui::qt {

class ScrollRoom : public QScrollArea {
 public:
  // `around`: what the window needs beside the content, in height.
  ScrollRoom(QWidget* content, int around);
  // Moves what `window` holds into one.
  static void wrap(QWidget& window);

  QSize sizeHint() const override;
  // The content's own, as long as the screen has it.
  QSize minimumSizeHint() const override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  int around_;
};

// What a window on that screen may take of it, its frame left out.
QSize roomOnScreen(const QScreen& screen);

}  // namespace skv::ui::qt
