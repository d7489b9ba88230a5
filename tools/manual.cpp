// skyvault-manual: makes the manual, a document for word processors and a page for browsers, from
// the Markdown text in share. In a table row "| File, Refresh | {German} |" it puts the words of
// the German window in the second place. Ends with 1 when a picture of the text or such a word is
// missing.
//
//   skyvault-manual TEXT FOLDER-OF-PICTURES TRANSLATION DOCUMENT PAGE
#include <QFile>
#include <QGuiApplication>
#include <QHash>
#include <QTextDocument>
#include <QXmlStreamReader>
#include <cstdio>
#include <optional>

#include "manual_html.h"
#include "manual_rtf.h"

namespace {

// A caption as it is read: "&" stands before the letter of its key, and "&&" for itself.
QString withoutKey(QString text) {
  text.replace(QLatin1String("&&"), QString(QChar::Null));
  text.remove(u'&');
  return text.replace(QChar::Null, u'&');
}

// The captions of a translation file, without the letters of their keys.
QHash<QString, QString> translations(QFile& file) {
  QHash<QString, QString> words;
  QString source;
  QXmlStreamReader reader(&file);
  while (!reader.atEnd()) {
    if (reader.readNext() != QXmlStreamReader::StartElement) continue;
    if (reader.name() == u"source") source = withoutKey(reader.readElementText());
    if (reader.name() == u"translation") words[source] = withoutKey(reader.readElementText());
  }
  return words;
}

// Puts the words in their places. Nothing when one of them has no translation.
std::optional<QString> translatedRows(const QString& markdown,
                                      const QHash<QString, QString>& german) {
  const QString place = QStringLiteral("{German}");
  QStringList lines = markdown.split(u'\n');
  for (QString& line : lines) {
    if (!line.contains(place)) continue;
    QStringList words = line.section(u'|', 1, 1).trimmed().split(QStringLiteral(", "));
    for (QString& word : words) {
      if (!german.contains(word)) {
        std::fprintf(stderr, "No German for \"%s\"\n", qPrintable(word));
        return {};
      }
      word = german[word];
    }
    line.replace(place, words.join(QStringLiteral(", ")));
  }
  return lines.join(u'\n');
}

}  // namespace

// Qt tells of desktops that a build does not need.
static void keepQuiet(QtMsgType type, const QMessageLogContext&, const QString& message) {
  if (type == QtCriticalMsg || type == QtFatalMsg)
    std::fprintf(stderr, "%s\n", qPrintable(message));
}

static bool store(const QByteArray& written, const QString& path) {
  QFile file(path);
  return !written.isEmpty() && file.open(QIODevice::WriteOnly) &&
         file.write(written) == written.size() && file.flush();
}

int main(int argc, char** argv) {
  qInstallMessageHandler(keepQuiet);
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QGuiApplication application(argc, argv);
  const QStringList arguments = QGuiApplication::arguments();
  if (arguments.size() != 6) {
    std::fprintf(stderr,
                 "usage: skyvault-manual TEXT FOLDER-OF-PICTURES TRANSLATION DOCUMENT PAGE\n");
    return 2;
  }
  QFile source(arguments[1]);
  QFile translation(arguments[3]);
  for (QFile* file : {&source, &translation})
    if (!file->open(QIODevice::ReadOnly)) {
      std::fprintf(stderr, "%s cannot be read\n", qPrintable(file->fileName()));
      return 1;
    }
  const auto markdown =
      translatedRows(QString::fromUtf8(source.readAll()), translations(translation));
  if (!markdown) return 1;
  QTextDocument text;
  text.setMarkdown(*markdown,
                   QTextDocument::MarkdownFeatures(QTextDocument::MarkdownDialectGitHub) |
                       QTextDocument::MarkdownNoHTML);
  const bool stored = store(manualAsRichText(text, arguments[2]), arguments[4]) &&
                      store(manualAsPage(text, arguments[2]), arguments[5]);
  return stored ? 0 : 1;
}
