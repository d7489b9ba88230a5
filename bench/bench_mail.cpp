// Mail operations on servers that run already. Prints the seconds that one took; with "memory"
// before it the bytes by which its peak is above an idle engine.
//   bench_mail send HOST CA FILE       FILE as an attachment
//   bench_mail fetch HOST CA FOLDER    the attachment of the mailbox's first mail into FOLDER
//   bench_mail run HOST CA             all headers; the mails with our marker, fetched and deleted
//   bench_mail outlook - - FILE        the mails with our marker in the mbox FILE
#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <stdexcept>

#include "platform/disk/drive_file_system.h"
#include "platform/mail/curl_mail_engine.h"
#include "sample/sample_simulator.h"

namespace {

using namespace skv;

void require(const Outcome& outcome) {
  if (!outcome.ok()) throw std::runtime_error(outcome.description());
}
template <class T>
T require(Result<T> result) {
  require(result.outcome());
  return std::move(result).value();
}

void send(MailEngine& engine, FileSystem& files, const std::string& file) {
  const auto mail = engine.NewMessage();
  require(mail->AddRecipient("bob@example.com", "bob@example.com"));
  require(mail->SetFromAddress("ann@example.com"));
  mail->SetSubject("/FSSkyvaultPack/AC/Large.zip");
  mail->SetBody("Hello\r\n");
  require(mail->AddAttachment(files.windowsPath(file)));
  require(engine.SendMail(*mail));
}

void fetch(MailEngine& engine, FileSystem& files, const std::string& folder) {
  const auto heads = require(engine.FetchHeaders(10));
  const auto full = require(engine.FetchFullMail(*require(heads->MessageAt(0))));
  require(full->SaveAttachment(require(full->AttachmentCount()) - 1, files.windowsPath(folder)));
}

void run(MailEngine& engine) {
  require(engine.MailboxCount());
  const auto heads = require(engine.FetchHeaders(10));
  for (int at = 0; at < heads->MessageCount(); ++at) {
    const MailMessage& head = *require(heads->MessageAt(at));
    if (head.GetSubject().find("/FSSkyvaultPack/AC/") == std::string::npos) continue;
    require(engine.FetchFullMail(head));
    require(engine.DeleteMail(head));
  }
}

void outlook(MailEngine& engine, const std::string& file) {
  engine.SetFetchLimit(20000);
  engine.SetOutlookFilter("Subject contains \"/FSSkyvault\"");
  if (require(engine.FetchOutlookFolder(file))->MessageCount() == 0)
    throw std::runtime_error("no mail of ours in " + file);
}

long peak() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss * 1024;
}

}  // namespace

int main(int argc, char** argv) {
  const bool memory = argc > 1 && std::strcmp(argv[1], "memory") == 0;
  argv += memory ? 1 : 0;
  argc -= memory ? 1 : 0;
  if (argc < 4) return 2;
  const std::string what = argv[1], last = argc > 4 ? argv[4] : "";
  const auto drives = std::filesystem::temp_directory_path() / "skyvault-bench-mail";
  sample::makeDrives(drives);
  try {
    DriveFileSystem files((drives / "dosdevices").string());
    CurlMailSystem system({.caFile = argv[3], .workFolder = (drives / "work").string()});
    const auto engine = system.load(files);
    engine->SetSmtpHost(argv[2]);
    engine->SetSmtpUserName("pilot");
    engine->SetSmtpPassword("secret word");
    engine->SetPopHost(argv[2]);
    engine->SetPopUserName("pilot");
    engine->SetPopPassword("secret word");
    const long idle = peak();
    const auto begin = std::chrono::steady_clock::now();
    if (what == "send") send(*engine, files, last);
    if (what == "fetch") fetch(*engine, files, last);
    if (what == "run") run(*engine);
    if (what == "outlook") outlook(*engine, last);
    engine->Disconnect();
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
    if (memory)
      std::printf("%ld\n", peak() - idle);
    else
      std::printf("%.6f\n", took.count());
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
  }
  return 0;
}
