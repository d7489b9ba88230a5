#include "base/percent.h"

#include "base/text.h"

namespace skv {

std::string percentDecoded(std::string_view text) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto digit = [&](std::size_t at) {
      return at < text.size() ? digits.find(upper(text.substr(at, 1))) : std::string_view::npos;
    };
    const std::size_t high = digit(i + 1), low = digit(i + 2);
    if (text[i] != '%' || high >= digits.size() || low >= digits.size()) {
      result += text[i];
      continue;
    }
    result += static_cast<char>(high << 4U | low);
    i += 2;
  }
  return result;
}

}  // namespace skv
