#include "platform/mail/curl_mail_engine.h"

namespace skv {

namespace {

class CurlMailEngine : public MailEngine {
 public:
  void AllowPlain(std::string_view) override {}
  void SetSmtpHost(std::string_view) override {}
  void SetSmtpUserName(std::string_view) override {}
  void SetSmtpPassword(std::string_view) override {}
  std::unique_ptr<OutgoingMail> NewMessage() override { return {}; }
  Outcome SendMail(const OutgoingMail&) override { return missing(); }
  Outcome SendMailByOutlook(const OutgoingMail&) override { return missing(); }
  void SetPopUserName(std::string_view) override {}
  void SetPopPassword(std::string_view) override {}
  void SetPopHost(std::string_view) override {}
  void SetPopPort(int) override {}
  Result<int> MailboxCount() override { return missing(); }
  Result<std::unique_ptr<MailBundle>> FetchHeaders(int) override { return missing(); }
  Result<std::unique_ptr<MailMessage>> FetchFullMail(const MailMessage&) override {
    return missing();
  }
  Outcome DeleteMail(const MailMessage&) override { return missing(); }
  void Disconnect() override {}
  void SetFetchLimit(int) override {}
  void SetOutlookFilter(std::string_view) override {}
  Result<std::unique_ptr<MailBundle>> FetchOutlookFolder(std::string_view) override {
    return missing();
  }
  std::vector<std::string> OutlookFolders() override { return {}; }

 private:
  static Outcome missing() { return Outcome::failure(err::mail, "not built yet"); }
};

}  // namespace

CurlMailSystem::CurlMailSystem(MailOptions options) : options_(std::move(options)) {}

std::unique_ptr<MailEngine> CurlMailSystem::load(FileSystem&) {
  return std::make_unique<CurlMailEngine>();
}

}  // namespace skv
