#include "platform/mail/curl_web.h"

#include <curl/curl.h>

#include <memory>

#include "platform/mail/server_link.h"

namespace skv {

namespace {

constexpr std::size_t longestText = std::size_t{64} << 10U;
constexpr long secondsInAll = 10;
constexpr long mostRedirects = 5;
constexpr int waitMilliseconds = 20;  // between two looks at the window

struct Body {
  std::string text;
  bool tooLong = false;
};

std::size_t take(const char* bytes, std::size_t, std::size_t count, void* target) {
  auto& body = *static_cast<Body*>(target);
  body.tooLong = body.text.size() + count > longestText;
  if (body.tooLong) return 0;
  body.text.append(bytes, count);
  return count;
}

struct EasyEnd {
  void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
};
struct MultiEnd {
  void operator()(CURLM* handle) const { curl_multi_cleanup(handle); }
};
using Easy = std::unique_ptr<CURL, EasyEnd>;
using Multi = std::unique_ptr<CURLM, MultiEnd>;

Outcome failed(const std::string& url, const std::string& why) {
  return Outcome::withText(err::web, url + " could not be read: " + why);
}

void prepare(CURL* easy, const std::string& url, Body& body, char* error) {
  curl_easy_setopt(easy, CURLOPT_URL, url.c_str());
  curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(easy, CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(easy, CURLOPT_FOLLOWLOCATION, 1L);
  curl_easy_setopt(easy, CURLOPT_MAXREDIRS, mostRedirects);
  curl_easy_setopt(easy, CURLOPT_TIMEOUT, secondsInAll);
  curl_easy_setopt(easy, CURLOPT_FAILONERROR, 1L);
  curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
  curl_easy_setopt(easy, CURLOPT_USERAGENT, "FSSkyvault");
  curl_easy_setopt(easy, CURLOPT_ERRORBUFFER, error);
  curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &take);
  curl_easy_setopt(easy, CURLOPT_WRITEDATA, &body);
}

// Runs the one transfer to its end. False when `yield` did not let it.
bool run(CURLM* multi, const std::function<bool()>& yield, CURLcode& result) {
  for (;;) {
    int running = 0;
    if (curl_multi_perform(multi, &running) != CURLM_OK) return true;
    int left = 0;
    while (const CURLMsg* message = curl_multi_info_read(multi, &left))
      if (message->msg == CURLMSG_DONE) result = message->data.result;
    if (running == 0) return true;
    curl_multi_poll(multi, nullptr, 0, waitMilliseconds, nullptr);
    if (!yield()) return false;
  }
}

}  // namespace

Result<std::string> CurlWeb::fetch(std::string_view url, const std::function<bool()>& yield) {
  startCurl();
  const std::string address(url);
  Body body;
  char error[CURL_ERROR_SIZE] = "";
  const Multi multi(curl_multi_init());
  const Easy easy(curl_easy_init());
  if (!multi || !easy) return failed(address, "no memory");
  prepare(easy.get(), address, body, error);
  if (curl_multi_add_handle(multi.get(), easy.get()) != CURLM_OK)
    return failed(address, "no memory");
  CURLcode result = CURLE_FAILED_INIT;
  const bool ended = run(multi.get(), yield, result);
  curl_multi_remove_handle(multi.get(), easy.get());
  if (!ended) return Outcome::failure(err::cancelled);
  if (body.tooLong) return failed(address, "the answer is too long");
  if (result != CURLE_OK)
    return failed(address, *error != '\0' ? error : curl_easy_strerror(result));
  return std::move(body.text);
}

}  // namespace skv
