#include "ui/qt/boxes.h"

#include <QFile>
#include <QFileDialog>
#include <QHeaderView>
#include <QInputDialog>
#include <QLabel>
#include <QTreeView>
#include <algorithm>

#include "base/paths.h"
#include "base/text.h"
#include "ui/qt/message_box.h"
#include "ui/qt/text.h"

namespace skv::ui::qt {

namespace {

// "Zip Files|*.zip" as Qt writes it, for any case of the letters: the disk tells them apart.
QString filterOf(const std::string& filter) {
  QStringList filters;
  const auto parts = split(filter, '|');
  for (std::size_t i = 0; i + 1 < parts.size(); i += 2) {
    QString patterns;
    for (const QChar letter : shown(parts[i + 1])) {
      if (letter == QLatin1Char(';'))
        patterns += QLatin1Char(' ');
      else if (letter.isLetter())
        patterns += QStringLiteral("[%1%2]").arg(letter.toLower()).arg(letter.toUpper());
      else
        patterns += letter;
    }
    filters << QStringLiteral("%1 (%2)").arg(captioned(parts[i]), patterns);
  }
  return filters.join(QStringLiteral(";;"));
}

// Qt's own dialog gives sizes and dates less room than they need; a desktop's dialog has no such
// list.
void showColumnsInFull(QFileDialog& dialog) {
  dialog.resize(820, 500);
  auto* list = dialog.findChild<QTreeView*>(QStringLiteral("treeView"));
  if (!list) return;
  list->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
  list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
}

}  // namespace

Answer runMessageBox(const Box& box, QWidget* owner) { return MessageBox(box, owner).ask(); }

std::optional<std::string> runInputBox(const std::string& prompt, const std::string& title,
                                       const std::string& text, QWidget* owner) {
  QInputDialog window(owner);
  window.setObjectName(QStringLiteral("inputBox"));
  window.setWindowTitle(shown(title));
  window.setLabelText(withShortWords(boxLines(prompt), window.fontMetrics(), boxLineWidth(window)));
  if (auto* label = window.findChild<QLabel*>()) {
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
  }
  window.setTextValue(shown(text));
  if (auto* field = window.findChild<QLineEdit*>()) field->selectAll();
  window.resize(std::min(380, boxLineWidth(window)), window.sizeHint().height());
  if (window.exec() != QDialog::Accepted) return std::nullopt;
  return typed(window.textValue());
}

Result<PickedFile> runFileDialog(const FileDialog& dialog, const FileSystem& files,
                                 QWidget* owner) {
  QFileDialog window(owner);
  window.setObjectName(QStringLiteral("openFile"));
  window.setOption(QFileDialog::HideNameFilterDetails);
  window.setFileMode(QFileDialog::ExistingFile);
  showColumnsInFull(window);
  if (!dialog.filter.empty()) window.setNameFilter(filterOf(dialog.filter));
  if (!dialog.initialFolder.empty())
    if (const auto place = files.nativePath(dialog.initialFolder); place.ok())
      window.setDirectory(QFile::decodeName(place.value().c_str()));
  if (window.exec() != QDialog::Accepted || window.selectedFiles().isEmpty())
    return Outcome::failure(err::cancelled);
  const std::string native = QFile::encodeName(window.selectedFiles().front()).toStdString();
  const std::string path = files.windowsPath(native);
  // A file "con.zip", a folder "a:b", or a place that no drive reaches.
  if (path.empty())
    return Outcome::withText(err::badFileName,
                             "\"" + native +
                                 "\" has no Windows path: no drive reaches it, or a name in it is "
                                 "one that Windows does not allow. Give it another name.");
  return PickedFile{path, path.substr(0, path.rfind('\\') + 1)};
}

}  // namespace skv::ui::qt
