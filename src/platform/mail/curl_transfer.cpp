#include "platform/mail/curl_transfer.h"

#include "platform/mail/mail_pulse.h"

namespace skv {

namespace {

// libcurl wants to be told once for a process that it is there.
CURL* newEasy() {
  static const CURLcode started = curl_global_init(CURL_GLOBAL_DEFAULT);
  return started == CURLE_OK ? curl_easy_init() : nullptr;
}

}  // namespace

CurlTransfer::CurlTransfer() : easy(newEasy()), multi_(curl_multi_init()) {
  curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
  // Names are looked up by a thread of its own, which a silent name server holds for a minute.
  curl_easy_setopt(easy, CURLOPT_QUICK_EXIT, 1L);
}

CurlTransfer::~CurlTransfer() {
  curl_multi_remove_handle(multi_, easy);
  curl_easy_cleanup(easy);
  curl_multi_cleanup(multi_);
}

CURLcode CurlTransfer::run(const std::function<bool()>& goesOn) const {
  if (curl_multi_add_handle(multi_, easy) != CURLM_OK) return CURLE_FAILED_INIT;
  for (;;) {
    int running = 0;
    if (curl_multi_perform(multi_, &running) != CURLM_OK) return CURLE_FAILED_INIT;
    int left = 0;
    if (const CURLMsg* message = curl_multi_info_read(multi_, &left);
        message != nullptr && message->msg == CURLMSG_DONE)
      return message->data.result;
    if (!goesOn()) return CURLE_ABORTED_BY_CALLBACK;
    curl_multi_poll(multi_, nullptr, 0, static_cast<int>(MailPulse::interval.count()), nullptr);
  }
}

}  // namespace skv
