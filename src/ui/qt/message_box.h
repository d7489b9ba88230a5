// A message box that fits its screen: what has no blank to wrap at is shortened in its middle, what
// is too long scrolls. Its whole text can be copied (Ctrl+C).
#pragma once

#include <QMessageBox>

#include "ui/model/windowing.h"

namespace skv::ui::qt {

// Texts made for Windows end their lines in CR LF, some in CR alone.
QString boxLines(const std::string& text);
// `text` with every word that is wider than `width` shortened in its middle.
QString withShortWords(const QString& text, const QFontMetrics& metrics, int width);
// How wide a box on `owner`'s screen may make a line.
int boxLineWidth(const QWidget& owner);

class MessageBox : public QMessageBox {
 public:
  MessageBox(const Box& box, QWidget* owner);
  Answer ask();

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void showText(const QString& text, const QString& details);
  void addScrolling(const QString& text);
  void addButtons(const Box& box);

  QString whole_;  // for the clipboard
  Answer unanswered_ = Answer::ok;
};

}  // namespace skv::ui::qt
