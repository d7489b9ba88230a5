#include "platform/dos_attributes.h"

#include <sys/xattr.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace skv {

namespace {

constexpr const char* attributeName = "user.DOSATTRIB";

std::string textForm(unsigned bits) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "0x%x", bits);
  return text.data();
}

int outcomeOf(int result, unsigned bits) {
  if (result == 0) return 0;
  if (bits == 0 && (errno == ENODATA || errno == ENOTSUP || errno == EPERM)) return 0;
  return errno;
}

}  // namespace

unsigned parseDosAttributes(const std::string& value) {
  if (value.starts_with("0x") || value.starts_with("0X"))
    return static_cast<unsigned>(std::strtoul(value.c_str(), nullptr, 16));
  // Samba's record: an empty text, the version twice, then which fields are valid and the bits, all
  // little endian.
  constexpr std::size_t versionAt = 2, validAt = 8, bitsAt = 12, least = 16;
  if (value.size() < least || value[0] != 0) return 0;
  const auto byte = [&value](std::size_t at) { return static_cast<unsigned char>(value[at]); };
  const bool bitsAreValid = (byte(validAt) & 1U) != 0;
  if (byte(versionAt) < 3 || byte(versionAt) > 5 || !bitsAreValid) return 0;
  return byte(bitsAt) | static_cast<unsigned>(byte(bitsAt + 1)) << 8U;
}

unsigned readDosAttributes(const std::string& native, bool* supported) {
  std::array<char, 256> value{};
  const ssize_t length = ::lgetxattr(native.c_str(), attributeName, value.data(), value.size() - 1);
  if (length > 0) return parseDosAttributes({value.data(), static_cast<std::size_t>(length)});
  if (length < 0 && errno == ENOTSUP && supported != nullptr) *supported = false;
  return 0;
}

int writeDosAttributes(const std::string& native, unsigned bits) {
  const std::string text = textForm(bits);
  return outcomeOf(bits == 0
                       ? ::lremovexattr(native.c_str(), attributeName)
                       : ::lsetxattr(native.c_str(), attributeName, text.data(), text.size(), 0),
                   bits);
}

int writeDosAttributes(int fd, unsigned bits) {
  if (bits == 0) return 0;  // a new file has none
  const std::string text = textForm(bits);
  return outcomeOf(::fsetxattr(fd, attributeName, text.data(), text.size(), 0), bits);
}

}  // namespace skv
