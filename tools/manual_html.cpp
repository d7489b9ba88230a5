#include "manual_html.h"

#include <QFile>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextList>
#include <QTextTable>
#include <algorithm>
#include <cstdio>
#include <utility>
#include <vector>

namespace {

// Light or dark as the browser is.
constexpr const char* head = R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta name="color-scheme" content="light dark">
<title>FS Skyvault: Users Manual</title>
<style>
:root { --text: #1c2733; --ground: #ffffff; --line: #ccd5de; --soft: #ecf2f8; --strong: #12406f; }
@media (prefers-color-scheme: dark) {
  :root { --text: #e4e9ee; --ground: #171b20; --line: #39424c; --soft: #21272e; --strong: #7fbdf0; }
}
body { color: var(--text); background: var(--ground); font: 1rem/1.55 sans-serif;
       max-width: 50rem; margin: 0 auto; padding: 1rem 1.25rem 4rem; }
h1, h2, h3, a { color: var(--strong); }
h2 { margin-top: 3rem; border-bottom: 1px solid var(--line); }
nav ul { list-style: none; padding-left: 1.25rem; margin: 0; }
table { border-collapse: collapse; margin: 1rem 0; }
th, td { border: 1px solid var(--line); padding: .3rem .6rem; text-align: left; vertical-align: top; }
th, pre { background: var(--soft); }
pre { padding: .6rem .8rem; overflow-x: auto; }
figure { margin: 1.5rem 0; text-align: center; }
figure img { max-width: 100%; height: auto; }
figcaption { font-style: italic; font-size: .9rem; }
</style>
</head>
<body>
)";

QByteArray escaped(const QString& text) {
  return text.toHtmlEscaped().replace(QChar::LineSeparator, QStringLiteral("<br>")).toUtf8();
}

QByteArray number(int value) { return QByteArray::number(value); }

class Page {
 public:
  Page(const QTextDocument& text, QString pictures) : text_(text), pictures_(std::move(pictures)) {}

  QByteArray written() {
    out_ = head;
    for (auto part = text_.rootFrame()->begin(); !part.atEnd(); ++part)
      if (const auto* table = qobject_cast<const QTextTable*>(part.currentFrame()))
        write(*table);
      else if (part.currentBlock().isValid())
        write(part.currentBlock());
    endLists(0);
    endCode();
    return whole_ ? out_ + "</body>\n</html>\n" : QByteArray();
  }

 private:
  void write(const QTextBlock& block) {
    const QTextList* list = block.textList();
    endLists(list == nullptr ? 0 : static_cast<std::size_t>(list->format().indent()));
    const bool code = block.blockFormat().hasProperty(QTextFormat::BlockCodeFence);
    if (!code) endCode();
    if (block.blockFormat().headingLevel() > 0)
      writeHeading(block);
    else if (list != nullptr)
      writeItem(block, *list);
    else if (code)
      out_ += (std::exchange(inCode_, true) ? "\n" : "<pre>") + escaped(block.text());
    else if (block.text().contains(QChar::ObjectReplacementCharacter))
      writeInline(block);
    else if (!block.text().isEmpty())
      inTags("p", block);
  }

  void inTags(const QByteArray& tag, const QTextBlock& block) {
    out_ += "<" + tag + ">";
    writeInline(block);
    out_ += "</" + tag + ">\n";
  }

  // The first heading is the title, and the contents follow it.
  void writeHeading(const QTextBlock& block) {
    const bool title = !std::exchange(titled_, true);
    const QByteArray tag = title ? "h1" : "h" + number(std::min(levelOf(block), 3));
    out_ +=
        "<" + tag + " id=\"" + markOf(block) + "\">" + escaped(block.text()) + "</" + tag + ">\n";
    if (title) writeContents();
  }

  // The parts of the manual are of the level of its title in its text.
  static int levelOf(const QTextBlock& heading) { return heading.blockFormat().headingLevel() + 1; }
  static QByteArray markOf(const QTextBlock& heading) {
    return "part" + number(heading.blockNumber());
  }

  void writeContents() {
    bool title = true;
    int depth = 1;
    out_ += "<nav>\n";
    for (QTextBlock block = text_.begin(); block.isValid(); block = block.next()) {
      if (block.blockFormat().headingLevel() == 0 || std::exchange(title, false)) continue;
      for (const int level = std::min(levelOf(block), 3); depth != level;)
        out_ += depth < level ? (++depth, "<ul>\n") : (--depth, "</ul>\n");
      out_ += "<li><a href=\"#" + markOf(block) + "\">" + escaped(block.text()) + "</a>\n";
    }
    for (; depth > 1; --depth) out_ += "</ul>\n";
    out_ += "</nav>\n";
  }

  // Lists in lists are told by their indent, from 1.
  void writeItem(const QTextBlock& block, const QTextList& list) {
    const bool counted = list.format().style() == QTextListFormat::ListDecimal;
    const auto depth = static_cast<std::size_t>(list.format().indent());
    if (lists_.size() == depth && lists_.back().first != &list) endLists(depth - 1);
    while (lists_.size() < depth) {
      lists_.emplace_back(&list, counted ? "ol" : "ul");
      out_ += "<" + lists_.back().second + ">\n";
    }
    out_ += "<li>";
    writeInline(block);
    out_ += "\n";
  }

  void endLists(std::size_t depth) {
    for (; lists_.size() > depth; lists_.pop_back()) out_ += "</" + lists_.back().second + ">\n";
  }

  void endCode() {
    if (std::exchange(inCode_, false)) out_ += "</pre>\n";
  }

  void writeInline(const QTextBlock& block) {
    for (auto piece = block.begin(); !piece.atEnd(); ++piece) {
      const QTextFragment fragment = piece.fragment();
      const QTextCharFormat format = fragment.charFormat();
      if (format.isImageFormat()) {
        writePicture(format.toImageFormat());
        continue;
      }
      QByteArray text = escaped(fragment.text());
      if (format.fontFixedPitch()) text = "<code>" + text + "</code>";
      if (format.fontItalic()) text = "<em>" + text + "</em>";
      if (format.fontWeight() > QFont::Medium) text = "<strong>" + text + "</strong>";
      out_ += text;
    }
  }

  // The words in brackets are the caption.
  void writePicture(const QTextImageFormat& format) {
    QFile file(pictures_ + u'/' + format.name());
    if (!file.open(QIODevice::ReadOnly)) {
      std::fprintf(stderr, "No picture %s\n", qPrintable(file.fileName()));
      whole_ = false;
      return;
    }
    const QByteArray caption = escaped(format.property(QTextFormat::ImageAltText).toString());
    out_ += "<figure><img alt=\"" + caption + "\" src=\"data:image/png;base64," +
            file.readAll().toBase64() + "\">\n<figcaption>" + caption + "</figcaption></figure>\n";
  }

  void write(const QTextTable& table) {
    endLists(0);
    endCode();
    out_ += "<table>\n";
    for (int row = 0; row < table.rows(); ++row) {
      out_ += "<tr>\n";
      for (int column = 0; column < table.columns(); ++column)
        inTags(row == 0 ? "th" : "td", table.cellAt(row, column).firstCursorPosition().block());
      out_ += "</tr>\n";
    }
    out_ += "</table>\n";
  }

  const QTextDocument& text_;
  const QString pictures_;
  QByteArray out_;
  std::vector<std::pair<const QTextList*, QByteArray>> lists_;  // that are open, with their tags
  bool titled_ = false;
  bool inCode_ = false;
  bool whole_ = true;
};

}  // namespace

QByteArray manualAsPage(const QTextDocument& text, const QString& pictures) {
  return Page(text, pictures).written();
}
