// One transfer of libcurl: what mail servers and the web have in common.
#pragma once

#include <curl/curl.h>

#include <functional>

namespace skv {

// Its end waits for nobody, not for a name server either. Without memory there is no `easy`, and a
// run fails.
class CurlTransfer {
 public:
  CurlTransfer();
  ~CurlTransfer();
  CurlTransfer(const CurlTransfer&) = delete;
  CurlTransfer& operator=(const CurlTransfer&) = delete;

  // To the end, or until `goesOn`, which is asked every few milliseconds, answers false:
  // CURLE_ABORTED_BY_CALLBACK.
  CURLcode run(const std::function<bool()>& goesOn) const;

  CURL* const easy;

 private:
  CURLM* const multi_;
};

}  // namespace skv
