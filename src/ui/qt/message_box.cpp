#include "ui/qt/message_box.h"

#include <QAbstractButton>
#include <QClipboard>
#include <QGridLayout>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QScreen>
#include <algorithm>

#include "ui/qt/icons.h"
#include "ui/qt/language.h"
#include "ui/qt/text.h"

namespace skv::ui::qt {

namespace {

constexpr int iconSide = 44;
constexpr int widestLine = 460;
constexpr int scrollingHeight = 220;

QString iconName(BoxIcon icon) {
  switch (icon) {
    case BoxIcon::information:
      return QStringLiteral("information");
    case BoxIcon::question:
      return QStringLiteral("question");
    case BoxIcon::exclamation:
    case BoxIcon::warning:
      return QStringLiteral("warning");
    case BoxIcon::none:
      break;
  }
  return {};
}

QString iconWord(BoxIcon icon) {
  switch (icon) {
    case BoxIcon::information:
      return QObject::tr("Information");
    case BoxIcon::question:
      return QObject::tr("Question");
    case BoxIcon::exclamation:
    case BoxIcon::warning:
      return QObject::tr("Warning");
    case BoxIcon::none:
      break;
  }
  return {};
}

bool warns(BoxIcon icon) { return icon == BoxIcon::warning || icon == BoxIcon::exclamation; }

QMessageBox::StandardButton defaultOf(const Box& box) {
  const bool asksOk = box.buttons == BoxButtons::okCancel;
  const auto agree = asksOk ? QMessageBox::Ok : QMessageBox::Yes;
  const auto refuse = asksOk ? QMessageBox::Cancel : QMessageBox::No;
  switch (box.defaultButton) {
    case DefaultButton::yes:
      return agree;
    case DefaultButton::no:
      return refuse;
    case DefaultButton::cancel:
      return box.buttons == BoxButtons::yesNo ? QMessageBox::No : QMessageBox::Cancel;
    case DefaultButton::byIcon:
      break;
  }
  return warns(box.icon) ? refuse : agree;
}

QSize screenOf(const QWidget& widget) { return widget.screen()->availableSize(); }

}  // namespace

QString boxLines(const std::string& text) {
  QString result = shown(text);
  result.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  result.replace(QLatin1Char('\r'), QLatin1Char('\n'));
  return result;
}

QString withShortWords(const QString& text, const QFontMetrics& metrics, int width) {
  static const QRegularExpression word(QStringLiteral("\\S+"));
  QString result;
  qsizetype done = 0;
  for (auto words = word.globalMatch(text); words.hasNext();) {
    const auto match = words.next();
    result += text.mid(done, match.capturedStart() - done);
    result += metrics.elidedText(match.captured(), Qt::ElideMiddle, width);
    done = match.capturedEnd();
  }
  return result + text.mid(done);
}

int boxLineWidth(const QWidget& owner) {
  return std::min(widestLine, screenOf(owner).width() - 3 * iconSide);
}

MessageBox::MessageBox(const Box& box, QWidget* owner)
    : QMessageBox(owner), whole_(boxLines(box.text)) {
  setObjectName(QStringLiteral("messageBox"));
  setWindowTitle(shown(box.title));
  setTextFormat(Qt::PlainText);
  if (const QString name = iconName(box.icon); !name.isEmpty())
    setIconPixmap(drawing(name, {iconSide, iconSide}, devicePixelRatio()));
  if (auto* icon = findChild<QLabel*>(QStringLiteral("qt_msgboxex_icon_label")))
    icon->setAccessibleName(iconWord(box.icon));
  addButtons(box);
  const QString details = boxLines(box.details);
  showText(whole_, details);
  if (!details.isEmpty()) whole_ += QStringLiteral("\n\n") + details;
}

void MessageBox::addButtons(const Box& box) {
  if (box.buttons == BoxButtons::ok) {
    setStandardButtons(QMessageBox::Ok);
    unanswered_ = Answer::ok;
    return;
  }
  const bool cancels = box.buttons != BoxButtons::yesNo;
  setStandardButtons(
      (box.buttons == BoxButtons::okCancel ? QMessageBox::Ok : QMessageBox::Yes | QMessageBox::No) |
      (cancels ? QMessageBox::Cancel : QMessageBox::NoButton));
  unanswered_ = cancels ? Answer::cancel : Answer::no;
  setEscapeButton(cancels ? QMessageBox::Cancel : QMessageBox::No);
  setDefaultButton(defaultOf(box));
  for (const auto& [which, caption] :
       {std::pair(QMessageBox::Yes, &box.yes), {QMessageBox::No, &box.no}})
    if (!caption->empty()) button(which)->setText(captioned(*caption));
}

void MessageBox::showText(const QString& text, const QString& details) {
  const int width = boxLineWidth(*this);
  const QString shortened = withShortWords(text, fontMetrics(), width);
  const QRect room(0, 0, width, 1);
  const auto heightOf = [&](const QString& words) {
    return fontMetrics().boundingRect(room, Qt::TextWordWrap, words).height();
  };
  const int highest = screenOf(*this).height() / (details.isEmpty() ? 2 : 4);
  if (heightOf(shortened) <= highest) {
    setText(shortened);
    if (!details.isEmpty()) addScrolling(details);
    return;
  }
  // The beginning says what it is about; the whole is there to be read.
  QString head = shortened.section(QLatin1Char('\n'), 0, 0);
  while (heightOf(head) > highest) head = head.left(head.size() / 2) + QChar(0x2026);
  setText(head);
  addScrolling(details.isEmpty() ? text : text + QStringLiteral("\n\n") + details);
}

void MessageBox::addScrolling(const QString& text) {
  auto* grid = qobject_cast<QGridLayout*>(layout());
  if (!grid) return;
  auto* field = new QPlainTextEdit(text);
  field->setObjectName(QStringLiteral("details"));
  field->setAccessibleName(tr("Details"));
  field->setReadOnly(true);
  field->setTabChangesFocus(true);
  field->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  const int lines =
      fontMetrics().lineSpacing() * static_cast<int>(text.count(QLatin1Char('\n')) + 2);
  field->setFixedSize(
      boxLineWidth(*this),
      std::clamp(lines + 8, 60, std::min(scrollingHeight, screenOf(*this).height() / 3)));
  // Above the buttons, which stand in the last row.
  const int last = grid->rowCount() - 1;
  if (QLayoutItem* buttons = grid->itemAtPosition(last, 0)) {
    grid->removeItem(buttons);
    grid->addItem(buttons, last + 1, 0, 1, grid->columnCount());
  }
  grid->addWidget(field, last, 0, 1, grid->columnCount(), Qt::AlignRight);
}

Answer MessageBox::ask() {
  // A box that goes with its window is answered as by its close box.
  switch (exec()) {
    case QMessageBox::Ok:
      return Answer::ok;
    case QMessageBox::Yes:
      return Answer::yes;
    case QMessageBox::No:
      return Answer::no;
    case QMessageBox::Cancel:
      return Answer::cancel;
    default:
      return unanswered_;
  }
}

void MessageBox::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy))
    QGuiApplication::clipboard()->setText(whole_);
  else
    QMessageBox::keyPressEvent(event);
}

}  // namespace skv::ui::qt
