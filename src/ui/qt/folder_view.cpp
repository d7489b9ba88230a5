#include "ui/qt/folder_view.h"

#include <QHeaderView>
#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

#include "base/paths.h"
#include "base/text.h"
#include "ui/qt/icons.h"
#include "ui/qt/text.h"

namespace skv::ui::qt {

namespace {
constexpr int leastRowHeight = 24;
constexpr int pathRole = Qt::UserRole;  // the Windows path with trailing backslash, as bytes

// Hidden folders of a home below which programs keep Wine prefixes: Wine itself, Flatpak, Lutris
// and Bottles, PlayOnLinux, CrossOver, Steam.
constexpr std::array<std::string_view, 6> waysToPrefixes{".wine",        ".var",      ".local",
                                                         ".playonlinux", ".cxoffice", ".steam"};

// Hidden folders are listed when a simulator may be found in them, and no others.
bool leadsToPrefix(const FileSystem& files, const std::string& path, const std::string& name) {
  return std::ranges::find(waysToPrefixes, lowerAscii(name)) != waysToPrefixes.end() ||
         files.attributes(path + name + "\\drive_c").ok();
}

std::vector<std::string> foldersIn(const FileSystem& files, const std::string& path) {
  std::vector<std::string> names;
  const auto entries = files.list(path, FileSystem::Entries::all);
  if (!entries.ok()) return names;
  for (const FolderEntry& entry : entries.value()) {
    if (!entry.folder) continue;
    const auto found = files.attributes(path + entry.name);
    const bool hidden = found.ok() && (found.value().hidden || found.value().system);
    if (!hidden || leadsToPrefix(files, path, entry.name)) names.push_back(entry.name);
  }
  return names;
}
}  // namespace

FolderView::FolderView(Bindings& bindings, Form& form, FolderTree& tree, const FileSystem& files,
                       const QString& accessibleName)
    : tree_(tree), files_(files) {
  setAccessibleName(accessibleName);
  setHeaderHidden(true);
  setUniformRowHeights(true);
  setMinimumHeight(60);
  setIndentation(18);
  binding_ = new Binding(bindings, form, tree, this, [this] { refresh(); });
  connect(this, &QTreeWidget::itemExpanded, this, [this](QTreeWidgetItem* item) {
    if (!refreshing_) list(*item);
  });
  connect(this, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* item) {
    if (refreshing_ || !item || !binding_->accepts()) return;
    tree_.folder = pathOf(*item);
    // Not within Qt's handling of the click: the handler may take long.
    QMetaObject::invokeMethod(
        this, [this] { binding_->fire(tree_.change); }, Qt::QueuedConnection);
  });
}

void FolderView::showEvent(QShowEvent* event) {
  QTreeWidget::showEvent(event);
  // The drives are looked for only when somebody sees them.
  if (topLevelItemCount() == 0) {
    listDrives();
    binding_->note();
  }
}

void FolderView::refresh() {
  setEnabled(tree_.enabled);
  setVisible(tree_.visible);
  if (topLevelItemCount() == 0) return;
  if (const auto* item = currentItem();
      item && equalsIgnoringCase(pathOf(*item), withBackslash(tree_.folder.get())))
    return;
  refreshing_ = true;
  QTreeWidgetItem* item = tree_.folder == "" ? nullptr : find(tree_.folder);
  setCurrentItem(item);
  if (item) scrollToItem(item, PositionAtCenter);
  refreshing_ = false;
}

QTreeWidgetItem* FolderView::addItem(QTreeWidgetItem* parent, const std::string& name,
                                     const std::string& path, const QString& drawingName) {
  auto* item = new QTreeWidgetItem;
  item->setText(0, shown(name));
  item->setSizeHint(0, QSize(0, leastRowHeight));
  item->setData(0, pathRole, QByteArray::fromStdString(path));
  item->setIcon(0, drawnIcon(drawingName, QPalette::Link));
  // Whether a folder holds others is known only when it is opened.
  item->setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
  if (parent)
    parent->addChild(item);
  else
    addTopLevelItem(item);
  return item;
}

void FolderView::listDrives() {
  const bool was = std::exchange(refreshing_, true);
  for (char letter = 'A'; letter <= 'Z'; ++letter) {
    const std::string drive{letter, ':'};
    if (files_.attributes(drive + "\\").ok())
      addItem(nullptr, drive, drive + "\\", QStringLiteral("drive"));
  }
  refreshing_ = was;
}

std::string FolderView::pathOf(const QTreeWidgetItem& item) {
  return item.data(0, pathRole).toByteArray().toStdString();
}

void FolderView::list(QTreeWidgetItem& item) {
  const std::string path = pathOf(item);
  const std::string current = currentItem() ? pathOf(*currentItem()) : std::string();
  const bool was = std::exchange(refreshing_, true);
  qDeleteAll(item.takeChildren());
  for (const std::string& name : foldersIn(files_, path))
    addItem(&item, name, path + name + "\\", QStringLiteral("folder"));
  if (item.childCount() == 0)
    item.setChildIndicatorPolicy(QTreeWidgetItem::DontShowIndicatorWhenChildless);
  // A current item below this one was taken away with the old listing.
  if (!current.empty() && current.starts_with(path) && current != path)
    setCurrentItem(find(current));
  refreshing_ = was;
}

QTreeWidgetItem* FolderView::find(const std::string& path) {
  const auto childNamed = [](QTreeWidgetItem& parent, const std::string& childPath) {
    for (int i = 0; i < parent.childCount(); ++i)
      if (equalsIgnoringCase(pathOf(*parent.child(i)), childPath)) return parent.child(i);
    return static_cast<QTreeWidgetItem*>(nullptr);
  };
  QTreeWidgetItem* found = nullptr;
  std::string prefix;
  for (const std::string& part : split(withoutBackslash(path), '\\')) {
    if (part.empty()) continue;
    prefix += part + "\\";
    QTreeWidgetItem& parent = found ? *found : *invisibleRootItem();
    QTreeWidgetItem* next = childNamed(parent, prefix);
    if (!next && found) {
      list(*found);
      next = childNamed(*found, prefix);
      // The way to the folder that is to be shown is shown, hidden or not.
      if (!next && files_.attributes(prefix).ok())
        next = addItem(found, part, prefix, QStringLiteral("folder"));
    }
    if (!next) break;
    if (found) found->setExpanded(true);
    found = next;
  }
  return found;
}

}  // namespace skv::ui::qt
