#include "platform/mail/curl_web.h"

#include "platform/mail/curl_transfer.h"

namespace skv {

namespace {

constexpr std::size_t longestText = std::size_t{64} << 10U;
constexpr long mostRedirects = 5;

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

Outcome failed(const std::string& url, const std::string& why) {
  return Outcome::withText(err::web, url + " could not be read: " + why);
}

void prepare(CURL* easy, const std::string& url, std::chrono::milliseconds timeLimit, Body& body,
             char* error) {
  curl_easy_setopt(easy, CURLOPT_URL, url.c_str());
  curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(easy, CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(easy, CURLOPT_FOLLOWLOCATION, 1L);
  curl_easy_setopt(easy, CURLOPT_MAXREDIRS, mostRedirects);
  curl_easy_setopt(easy, CURLOPT_TIMEOUT_MS, static_cast<long>(timeLimit.count()));
  curl_easy_setopt(easy, CURLOPT_FAILONERROR, 1L);
  curl_easy_setopt(easy, CURLOPT_USERAGENT, "FSSkyvault");
  curl_easy_setopt(easy, CURLOPT_ERRORBUFFER, error);
  curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &take);
  curl_easy_setopt(easy, CURLOPT_WRITEDATA, &body);
}

}  // namespace

Result<std::string> CurlWeb::fetch(std::string_view url, const std::function<bool()>& yield) {
  const std::string address(url);
  Body body;
  char error[CURL_ERROR_SIZE] = "";
  const CurlTransfer transfer;
  prepare(transfer.easy, address, timeLimit_, body, error);
  const CURLcode result = transfer.run(yield);
  if (result == CURLE_ABORTED_BY_CALLBACK) return Outcome::failure(err::cancelled);
  if (body.tooLong) return failed(address, "the answer is too long");
  if (result != CURLE_OK)
    return failed(address, *error != '\0' ? error : curl_easy_strerror(result));
  return std::move(body.text);
}

}  // namespace skv
