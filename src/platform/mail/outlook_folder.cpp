#include "platform/mail/outlook_folder.h"

#include "platform/mail/local_mail_bundle.h"
#include "platform/mail/mail_folders.h"
#include "platform/mail/mail_words.h"
#include "platform/mail/maildir_reader.h"
#include "platform/mail/mbox_reader.h"
#include "platform/mail/outlook_filter.h"

namespace skv {

Result<std::unique_ptr<MailBundle>> fetchOutlookFolder(const OutlookFetch& fetch,
                                                       const std::string& workFolder,
                                                       FileSystem& files, MailPulse& pulse) {
  const auto filter = OutlookFilter::parse(fetch.filter);
  if (!filter)
    return Outcome::withText(err::mail,
                             "This condition for mails is not known: " + onOneLine(fetch.filter));
  const auto folder = findMailFolder(fetch.folder, files);
  if (!folder.ok()) return folder.outcome();
  const std::string& path = folder.value().path;

  if (folder.value().maildir) {
    auto found = scanMaildir(path, *filter, fetch.limit, pulse);
    if (!found.ok()) return found.outcome();
    return localMailBundle(maildirPlace(path), std::move(found).value(), files, pulse);
  }
  auto file = openStoredFile(path);
  if (!file.ok()) return file.outcome();
  auto found = scanMbox(file.value().get(), *filter, fetch.limit, pulse);
  if (!found.ok()) return found.outcome();
  return localMailBundle(mboxPlace(std::move(file).value(), workFolder), std::move(found).value(),
                         files, pulse);
}

}  // namespace skv
