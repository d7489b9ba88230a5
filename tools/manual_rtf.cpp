#include "manual_rtf.h"

#include <QFile>
#include <QImage>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextList>
#include <QTextTable>
#include <algorithm>
#include <cstdio>
#include <numeric>
#include <utility>
#include <vector>

namespace {

// Twips, 1440 to the inch.
constexpr int textWidth = 9638;  // A4 between margins of 2 cm
constexpr int pictureWidth = 6240;
constexpr int cellMargin = 90;
constexpr int letterWidth = 118;  // of a table's text, generously
constexpr int listStep = 360;

// The styles are numbered as the stylesheet below numbers them; a heading's is its level.
constexpr const char* rtfHead = R"({\rtf1\ansi\ansicpg1252\deff0\deflang2057
{\fonttbl{\f0\fswiss\fcharset0 Liberation Sans{\*\falt Arial};}{\f1\fmodern\fcharset0 Liberation Mono{\*\falt Courier New};}}
{\colortbl;\red18\green64\blue111;\red236\green242\blue248;\red160\green170\blue180;\red90\green100\blue110;}
{\stylesheet{\s0\sa140\sl276\slmult1\f0\fs21 Normal;}
{\s1\keepn\sb0\sa180\outlinelevel0\f0\fs36\b\cf1\sbasedon0\snext0 heading 1;}
{\s2\keepn\sb280\sa120\outlinelevel1\f0\fs26\b\cf1\sbasedon0\snext0 heading 2;}
{\s4\qc\sa220\f0\fs18\i\cf4\sbasedon0\snext0 caption;}
{\s5\sa140\li400\f1\fs20\sbasedon0\snext0 Code;}
{\s6\sb40\f0\fs19\b\sbasedon0\snext6 toc 1;}{\s7\li400\f0\fs17\sbasedon0\snext7 toc 2;}}
{\info{\title FS Skyvault: Users Manual}}
\paperw11906\paperh16838\margl1134\margr1134\margt1134\margb1247\widowctrl
{\footer\pard\qc\f0\fs18\cf4 FS Skyvault   -   {\field{\*\fldinst PAGE}{\fldrslt 1}}\par}
)";
constexpr const char* normal = "\\pard\\plain\\s0\\sa140\\sl276\\slmult1\\f0\\fs21 ";
// The break is a sign of its own: AbiWord knows none that is a property of the paragraph.
constexpr const char* headings[] = {
    "\\page\\pard\\plain\\s1\\keepn\\sa180\\outlinelevel0\\f0\\fs36\\b\\cf1 ",
    "\\pard\\plain\\s2\\keepn\\sb280\\sa120\\outlinelevel1\\f0\\fs26\\b\\cf1 "};
constexpr const char* caption = "\\pard\\plain\\s4\\qc\\sa220\\f0\\fs18\\i\\cf4 ";
constexpr const char* code = "\\pard\\plain\\s5\\sa140\\li400\\f1\\fs20 ";

QByteArray rtfText(const QString& text) {
  QByteArray out;
  for (const QChar letter : text) {
    const auto unit = static_cast<int>(letter.unicode());
    if (letter == u'\\' || letter == u'{' || letter == u'}')
      out.append('\\').append(letter.toLatin1());
    else if (letter == QChar::LineSeparator)
      out += "\\line ";
    else if (unit < 128)
      out += letter.toLatin1();
    else
      out += "\\u" + QByteArray::number(unit > 32767 ? unit - 65536 : unit) + "?";
  }
  return out;
}

class RichText {
 public:
  RichText(const QTextDocument& text, QString pictures)
      : text_(text), pictures_(std::move(pictures)) {}

  // "" when a picture is missing.
  QByteArray written() {
    out_ = rtfHead;
    for (auto part = text_.rootFrame()->begin(); !part.atEnd(); ++part)
      if (const auto* table = qobject_cast<const QTextTable*>(part.currentFrame()))
        write(*table);
      else if (part.currentBlock().isValid())
        write(part.currentBlock());
    return whole_ ? out_ + "}" : QByteArray();
  }

 private:
  void write(const QTextBlock& block) {
    const int level = block.blockFormat().headingLevel();
    if (level > 0) {
      writeHeading(block, std::min(level, 2));
    } else if (const QTextList* list = block.textList()) {
      const int indent = list->format().indent() * listStep;
      out_ += normal;
      out_ += "\\sa80\\fi-" + QByteArray::number(listStep) + "\\li" + QByteArray::number(indent);
      out_ += "\\tx" + QByteArray::number(indent) + " ";
      out_ +=
          (list->format().style() == QTextListFormat::ListDecimal ? rtfText(list->itemText(block))
                                                                  : QByteArray("\\bullet")) +
          "\\tab ";
      writeInline(block);
      out_ += "\\par\n";
    } else if (block.blockFormat().hasProperty(QTextFormat::BlockCodeFence)) {
      out_ += code + rtfText(block.text()) + "\\par\n";
    } else if (!block.text().isEmpty()) {
      out_ += block.text().contains(QChar::ObjectReplacementCharacter)
                  ? "\\pard\\plain\\qc\\keepn\\sb120\\sa80 "
                  : normal;
      writeInline(block);
      out_ += "\\par\n";
    }
  }

  // The first heading is the title, and the contents follow it.
  void writeHeading(const QTextBlock& block, int level) {
    if (!std::exchange(titled_, true)) {
      out_ += "\\pard\\plain\\qc\\sa60\\f0\\fs56\\b\\cf1 " + rtfText(block.text()) + "\\par\n";
      writeContents();
      return;
    }
    const QByteArray mark = markOf(block);
    out_ += headings[level - 1];
    out_ += "{\\*\\bkmkstart " + mark + "}" + rtfText(block.text()) + "{\\*\\bkmkend " + mark + "}";
    out_ += "\\par\n";
  }

  static QByteArray markOf(const QTextBlock& heading) {
    return "part" + QByteArray::number(heading.blockNumber());
  }

  void writeContents() {
    bool title = true;
    out_ += "\\pard\\plain\\qc\\sa160\\f0\\fs28\\cf4 Users Manual\\par\n";
    for (QTextBlock block = text_.begin(); block.isValid(); block = block.next()) {
      const int level = block.blockFormat().headingLevel();
      if (level == 0 || std::exchange(title, false)) continue;
      out_ += level == 1 ? "\\pard\\plain\\s6\\sb40\\sa0\\f0\\fs19\\b "
                         : "\\pard\\plain\\s7\\li400\\sa0\\f0\\fs17 ";
      out_ += "\\tqr\\tx" + QByteArray::number(textWidth) + " ";
      out_ += "{\\field{\\*\\fldinst HYPERLINK \\\\l \"" + markOf(block) + "\"}{\\fldrslt " +
              rtfText(block.text()) + "}}";
      // The number is the word processor's to fill in. One that does not shows none, which is
      // better than a wrong one.
      out_ +=
          "\\tab {\\field{\\*\\fldinst PAGEREF " + markOf(block) + " \\\\h}{\\fldrslt }}\\par\n";
    }
  }

  void writeInline(const QTextBlock& block) {
    for (auto piece = block.begin(); !piece.atEnd(); ++piece) {
      const QTextFragment fragment = piece.fragment();
      const QTextCharFormat format = fragment.charFormat();
      if (format.isImageFormat()) {
        writePicture(format.toImageFormat());
        continue;
      }
      QByteArray style;
      if (format.fontWeight() > QFont::Medium) style += "\\b";
      if (format.fontItalic()) style += "\\i";
      if (format.fontFixedPitch()) style += "\\f1";
      const QByteArray text = rtfText(fragment.text());
      out_ += style.isEmpty() ? text : "{" + style + " " + text + "}";
    }
  }

  // The words in brackets are the caption.
  void writePicture(const QTextImageFormat& format) {
    QFile file(pictures_ + u'/' + format.name());
    const QImage picture(file.fileName());
    if (picture.isNull() || !file.open(QIODevice::ReadOnly)) {
      std::fprintf(stderr, "No picture %s\n", qPrintable(file.fileName()));
      whole_ = false;
      return;
    }
    const auto number = [](int value) { return QByteArray::number(value); };
    out_ += "{\\pict\\pngblip\\picw" + number(picture.width()) + "\\pich" +
            number(picture.height()) + "\\picwgoal" + number(pictureWidth) + "\\pichgoal" +
            number(pictureWidth * picture.height() / picture.width()) + "\n" +
            file.readAll().toHex() + "}";
    out_ += "\\par\n";
    out_ += caption + rtfText(format.property(QTextFormat::ImageAltText).toString());
  }

  static std::vector<int> widths(const QTextTable& table) {
    std::vector<int> least, wanted;
    for (int column = 0; column < table.columns(); ++column) {
      qsizetype longestWord = 4, longest = 8;
      for (int row = 0; row < table.rows(); ++row) {
        const QString text = table.cellAt(row, column).firstCursorPosition().block().text();
        for (const QString& word : text.split(u' '))
          longestWord = std::max(longestWord, word.size());
        longest = std::max(longest, text.size());
      }
      least.push_back(static_cast<int>(longestWord) * letterWidth + 2 * cellMargin);
      wanted.push_back(static_cast<int>(std::min<qsizetype>(longest, 72)));
    }
    // What the words leave goes to the columns by the length of their texts.
    const int room = textWidth - std::accumulate(least.begin(), least.end(), 0);
    const int all = std::accumulate(wanted.begin(), wanted.end(), 0);
    for (std::size_t i = 0; i < least.size(); ++i) least[i] += room * wanted[i] / all;
    return least;
  }

  void write(const QTextTable& table) {
    const std::vector<int> width = widths(table);
    for (int row = 0; row < table.rows(); ++row) {
      out_ += "\\trowd\\trgaph" + QByteArray::number(cellMargin) + "\\trkeep";
      out_ += row == 0 ? "\\trhdr" : "";
      int right = 0;
      for (const int column : width) {
        for (const char* side : {"t", "l", "b", "r"})
          out_ += QByteArray("\\clbrdr") + side + "\\brdrs\\brdrw8\\brdrcf3";
        out_ += row == 0 ? "\\clcbpat2" : "";
        out_ += "\\cellx" + QByteArray::number(right += column);
      }
      for (int column = 0; column < table.columns(); ++column) {
        // Room between the lines, too: AbiWord leaves none around the text of a cell.
        out_ += "\n\\pard\\plain\\intbl\\sb20\\sa20\\sl264\\slmult0\\f0\\fs19";
        out_ += row == 0 ? "\\b " : " ";
        writeInline(table.cellAt(row, column).firstCursorPosition().block());
        out_ += "\\cell";
      }
      out_ += "\\row\n";
    }
    out_ += "\\pard\\plain\\sa0\\fs12\\par\n";
  }

  const QTextDocument& text_;
  const QString pictures_;
  QByteArray out_;
  bool titled_ = false;
  bool whole_ = true;
};

}  // namespace

QByteArray manualAsRichText(const QTextDocument& text, const QString& pictures) {
  return RichText(text, pictures).written();
}
