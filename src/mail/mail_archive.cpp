#include "mail/mail_archive.h"

#include <utility>

#include "base/paths.h"
#include "base/text.h"
#include "core/addon_name.h"
#include "core/disk_queries.h"
#include "core/stores.h"

namespace skv {

namespace {

std::string withoutEnd(const std::string& file) {
  return file.substr(0, file.size() - std::string_view(packageEnd).size());
}

// Asked of the disk, which alone knows how long a name may be.
bool mayStand(const App& app, const std::string& path) {
  return app.platform.files.attributes(path).outcome().number() != err::badFileName;
}

// Whether the disk takes the name as it is, and so it takes that of the folder that an installation
// would make.
bool isArchiveName(const App& app, const std::string& file, const std::string& addons) {
  if (!lowerAscii(file).ends_with(packageEnd)) return false;
  const std::string base = withoutEnd(file);
  if (!isElementName(base) || file.find('/') != std::string::npos || base.starts_with('.') ||
      base.ends_with('.') || base.ends_with(' '))
    return false;
  return mayStand(app, app.InstallTempDir + file) && mayStand(app, addons + base);
}

}  // namespace

Result<MailArchive> archiveOf(App& app, const MailMessage& mail, const std::string& addons) {
  const auto count = mail.AttachmentCount();
  if (!count.ok()) return count.outcome();
  MailArchive last;
  for (int index = count.value() - 1; index >= 0; --index) {
    auto name = mail.AttachmentName(index);
    if (!name.ok()) return name.outcome();
    std::string file = std::move(name).value();
    if (isArchiveName(app, file, addons)) {
      std::string addon = nearestAddonName(app, addons, withoutEnd(file));
      return MailArchive{index, std::move(file), std::move(addon)};
    }
    if (last.index < 0) last = {index, std::move(file), ""};
  }
  return last;
}

}  // namespace skv
