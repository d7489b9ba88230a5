// A FolderTree on screen: the drives and their folders, each listed when it is opened.
#pragma once

#include <QTreeWidget>
#include <string>

#include "platform/file_system.h"
#include "ui/qt/bindings.h"

namespace skv::ui::qt {

class FolderView : public QTreeWidget {
 public:
  FolderView(Bindings& bindings, Form& form, FolderTree& tree, const FileSystem& files,
             const QString& accessibleName);

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  void refresh();
  void listDrives();
  // Lists the folder anew, as it is on disk now.
  void list(QTreeWidgetItem& item);
  QTreeWidgetItem* addItem(QTreeWidgetItem* parent, const std::string& name,
                           const std::string& path, const QString& drawingName);
  static std::string pathOf(const QTreeWidgetItem& item);
  // The item of a folder, its parents listed as needed; the nearest parent when it is not on disk.
  QTreeWidgetItem* find(const std::string& path);

  FolderTree& tree_;
  const FileSystem& files_;
  Binding* binding_;
  bool refreshing_ = false;
};

}  // namespace skv::ui::qt
