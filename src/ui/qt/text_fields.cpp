#include "ui/qt/text_fields.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <optional>

#include "ui/qt/text.h"

namespace skv::ui::qt {

namespace {

constexpr int enterKey = 13;

// What the box's handler types in place of the key; none when the key keeps its meaning.
std::optional<QString> replacement(const TextBox& box, int key) {
  if (!box.keyPress) return std::nullopt;
  const std::string text = box.keyPress(key);
  if (key != 0) return std::nullopt;
  return shown(text);
}

int keyOf(const QKeyEvent& event) {
  if (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter) return enterKey;
  return event.text().isEmpty() ? 0 : event.text().front().unicode();
}

// Answers whether the key was Ctrl+S in a box that can be saved.
bool saves(const TextBox& box, const QKeyEvent& key, const Binding& binding) {
  if (!box.save || !key.matches(QKeySequence::Save)) return false;
  if (box.save->enabled && !key.isAutoRepeat()) binding.fire(box.save->click);
  return true;
}

// Another window coming to the front, or a menu, is no change of focus between the boxes.
bool betweenControls(const QFocusEvent& event) {
  return event.reason() != Qt::ActiveWindowFocusReason && event.reason() != Qt::PopupFocusReason &&
         event.reason() != Qt::MenuBarFocusReason;
}

}  // namespace

TextLine::TextLine(Bindings& bindings, Form& form, TextBox& box) : box_(box) {
  setEchoMode(box.password ? QLineEdit::Password : QLineEdit::Normal);
  setAccessibleName(spoken(box.label));
  binding_ = new Binding(bindings, form, box, this, [this] {
    if (const QString now = shown(box_.text); now != text()) {
      setText(now);
      if (!hasFocus()) setCursorPosition(0);  // the beginning of a long text tells more
    }
    setEnabled(box_.enabled);
    setVisible(box_.visible);
  });
  connect(this, &QLineEdit::textEdited, binding_, [this](const QString& now) {
    if (!binding_->accepts()) return;
    box_.text = typed(now);
    binding_->fire(box_.change);
  });
}

void TextLine::keyPressEvent(QKeyEvent* event) {
  if (saves(box_, *event, *binding_)) return;
  const int key = keyOf(*event);
  if (key != 0 && binding_->accepts()) {
    if (const auto instead = replacement(box_, key)) {
      insert(*instead);
      box_.text = typed(text());
      return;
    }
  }
  QLineEdit::keyPressEvent(event);
}

void TextLine::focusInEvent(QFocusEvent* event) {
  QLineEdit::focusInEvent(event);
  if (betweenControls(*event)) binding_->tell(box_.gotFocus);
}

void TextLine::focusOutEvent(QFocusEvent* event) {
  QLineEdit::focusOutEvent(event);
  if (betweenControls(*event)) binding_->tell(box_.lostFocus);
}

TextArea::TextArea(Bindings& bindings, Form& form, TextBox& box) : box_(box) {
  setTabChangesFocus(true);
  setAccessibleName(spoken(box.label));
  binding_ = new Binding(bindings, form, box, this, [this] {
    refreshing_ = true;
    if (const QString now = shown(box_.text); now != toPlainText()) setPlainText(now);
    setEnabled(box_.enabled);
    setVisible(box_.visible);
    refreshing_ = false;
  });
  connect(this, &QPlainTextEdit::textChanged, binding_, [this] {
    if (refreshing_ || !binding_->accepts()) return;
    box_.text = typed(toPlainText());
    binding_->fire(box_.change);
  });
}

void TextArea::keyPressEvent(QKeyEvent* event) {
  if (saves(box_, *event, *binding_)) return;
  const int key = keyOf(*event);
  if (key != 0 && binding_->accepts()) {
    if (const auto instead = replacement(box_, key)) {
      insertPlainText(*instead);
      return;
    }
    if (key == enterKey && !box_.lineBreaks) return;
  }
  QPlainTextEdit::keyPressEvent(event);
}

void TextArea::focusInEvent(QFocusEvent* event) {
  QPlainTextEdit::focusInEvent(event);
  if (betweenControls(*event)) binding_->tell(box_.gotFocus);
}

void TextArea::focusOutEvent(QFocusEvent* event) {
  QPlainTextEdit::focusOutEvent(event);
  if (betweenControls(*event)) binding_->tell(box_.lostFocus);
}

void TextArea::insertFromMimeData(const QMimeData* source) {
  QString text = source->text();
  text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
  text.replace(QChar::ParagraphSeparator, QLatin1Char('\n'));
  if (!box_.lineBreaks)
    text.replace(QLatin1Char('\n'), replacement(box_, enterKey).value_or(QStringLiteral(" ")));
  insertPlainText(text);
}

}  // namespace skv::ui::qt
