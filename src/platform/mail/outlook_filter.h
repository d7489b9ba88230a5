// The condition by which FetchOutlookFolder chooses mails: Subject contains "/FSSkyvault".
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace skv {

class OutlookFilter {
 public:
  // "": all mails pass. None for what is of no form that is known here.
  static std::optional<OutlookFilter> parse(std::string_view expression);

  // The decoded subject when the mail passes. `subject`: as it was sent, unfolded.
  std::optional<std::string> passed(const std::string& subject) const;

 private:
  std::string text_;
};

}  // namespace skv
