#include "platform/disk/dos_attributes.h"

#include <sys/xattr.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <initializer_list>

#include "platform/disk/native_calls.h"

namespace skv {

namespace {

constexpr const char* attributeName = "user.DOSATTRIB";
constexpr std::size_t longestValue = 256;
constexpr unsigned keptBits = dos::hidden | dos::system | dos::archive;

// getxattrat of Linux 6.13, which the C library does not know yet. Its number is the same on every
// machine.
constexpr long getxattratCall = 464;
struct ValueArguments {
  std::uint64_t value;
  std::uint32_t size, flags;
};

bool endsWithAbsence(int error) { return error == ENODATA || error == ENOTSUP; }

// The errors by which a disk says that it fails, not that nothing is stored.
bool cannotTell(int error) {
  switch (error) {
    case EIO:
    case ENOMEM:
    case ESTALE:
    case EUCLEAN:
    case ENOTCONN:
    case ETIMEDOUT:
      return true;
    default:
      return false;
  }
}

using Value = std::array<char, longestValue>;

// Of a call that answers with the value's length, or -1.
StoredBits storedBits(long length, const Value& value) {
  if (length >= 0) return {dosBitsOf({value.data(), static_cast<std::size_t>(length)}), 0};
  return {0, cannotTell(errno) ? errno : 0};
}

template <class Number>
Number littleEndian(std::string_view bytes, std::size_t at) {
  Number number = 0;
  for (std::size_t i = sizeof(Number); i-- > 0;)
    number = static_cast<Number>((number << 8) | static_cast<unsigned char>(bytes[at + i]));
  return number;
}

template <class Read>
int copyStored(const char* name, int to, Read read) {
  std::array<char, 4096> value;
  const auto length = retried([&] { return read(value.data(), value.size()); });
  if (length < 0 && cannotTell(errno)) return errno;
  if (length > 0)
    retried(
        [&] { return ::fsetxattr(to, name, value.data(), static_cast<std::size_t>(length), 0); });
  return 0;
}

void copyStoredOf(const std::string& replaced, std::initializer_list<const char*> names, int to) {
  for (const char* name : names)
    copyStored(name, to, [&](char* value, std::size_t size) {
      return ::lgetxattr(replaced.c_str(), name, value, size);
    });
}

}  // namespace

unsigned dosBitsOf(std::string_view stored) {
  const std::string_view text = stored.substr(0, stored.find('\0'));
  if (text.starts_with("0x")) {
    unsigned bits = 0;
    std::from_chars(text.data() + 2, text.data() + text.size(), bits, 16);
    return bits & keptBits;
  }
  // A NUL-terminated text, then, each at a multiple of its size: version and once more version as
  // 16 bits, which fields are valid and the attributes as 32 bits.
  const auto aligned = [](std::size_t at, std::size_t size) {
    return (at + size - 1) / size * size;
  };
  const std::size_t version = aligned(text.size() + 1, 2);
  const std::size_t valid = aligned(version + 4, 4);
  if (stored.size() < valid + 8 || littleEndian<std::uint16_t>(stored, version) < 3) return 0;
  constexpr std::uint32_t attributesAreValid = 1;
  if ((littleEndian<std::uint32_t>(stored, valid) & attributesAreValid) == 0) return 0;
  return littleEndian<std::uint32_t>(stored, valid + 4) & keptBits;
}

StoredBits storedDosBits(const std::string& native) {
  Value value;
  return storedBits(retried([&] {
                      return ::getxattr(native.c_str(), attributeName, value.data(), value.size());
                    }),
                    value);
}

StoredDosBits::StoredDosBits(int folder, std::string native)
    : folder_(folder), path_(std::move(native)), prefix_(path_.size()) {}

StoredBits StoredDosBits::of(const char* name) {
  if (!stored_) return {};
  Value value;
  const auto answer = [&](long length) {
    if (length < 0 && errno == ENOTSUP) stored_ = false;
    return storedBits(length, value);
  };
  if (byFolder_) {
    const ValueArguments arguments{reinterpret_cast<std::uintptr_t>(value.data()), value.size(), 0};
    const long length = retried([&] {
      return ::syscall(getxattratCall, folder_, name, 0, attributeName, &arguments,
                       sizeof arguments);
    });
    // Not only systems that lack the call refuse it: a sandbox may forbid what it does not know.
    byFolder_ = length >= 0 || errno == ENODATA || errno == ENOTSUP;
    if (byFolder_) return answer(length);
  }
  path_.replace(prefix_, std::string::npos, name);
  return answer(retried(
      [&] { return ::getxattr(path_.c_str(), attributeName, value.data(), value.size()); }));
}

bool isReadOnly(const struct stat& status) {
  return !S_ISLNK(status.st_mode) && (status.st_mode & S_IWUSR) == 0;
}

Attributes attributesOf(unsigned stored, std::string_view name, const struct stat& status) {
  Attributes result;
  result.folder = S_ISDIR(status.st_mode);
  result.readOnly = isReadOnly(status);
  result.hidden = name.starts_with('.') || (stored & dos::hidden) != 0;
  result.system = (stored & dos::system) != 0;
  result.archive = (stored & dos::archive) != 0;
  return result;
}

int applyAttributes(const std::string& native, std::string_view name, const struct stat& status,
                    Attributes attributes) {
  const mode_t mode = status.st_mode & 07777;
  const mode_t wantedMode = attributes.readOnly ? mode & ~mode_t{S_IWUSR} : mode | S_IWUSR;
  const auto changeMode = [&](mode_t to) {
    return errorOf([&] { return ::chmod(native.c_str(), to); });
  };

  const auto [stored, unknown] = storedDosBits(native);
  if (unknown != 0) return unknown;
  unsigned wanted = (attributes.system ? dos::system : 0) | (attributes.archive ? dos::archive : 0);
  if (attributes.hidden && !(name.starts_with('.') && (stored & dos::hidden) == 0))
    wanted |= dos::hidden;
  mode_t present = mode;
  if (stored != wanted) {
    // Only the writer of a file may store attributes with it.
    if ((mode & S_IWUSR) == 0) {
      present = mode | S_IWUSR;
      if (const int error = changeMode(present)) return error;
    }
    int error = 0;
    if (wanted == 0) {
      error = errorOf([&] { return ::removexattr(native.c_str(), attributeName); });
    } else {
      std::array<char, 8> text = {'0', 'x'};
      const char* end = std::to_chars(text.data() + 2, text.data() + text.size(), wanted, 16).ptr;
      error = errorOf([&] {
        return ::setxattr(native.c_str(), attributeName, text.data(),
                          static_cast<std::size_t>(end - text.data()), 0);
      });
    }
    const bool dropped = endsWithAbsence(error) && (wanted & ~dos::archive) == 0;
    if (error != 0 && !dropped) {
      if (present != mode) changeMode(mode);
      return error;
    }
  }
  return present == wantedMode ? 0 : changeMode(wantedMode);
}

int copyStoredAttributes(int from, int to) {
  return copyStored(attributeName, to, [&](char* value, std::size_t size) {
    return ::fgetxattr(from, attributeName, value, size);
  });
}

void copyStoredAttributes(const std::string& replaced, int to) {
  copyStoredOf(replaced, {attributeName, "system.posix_acl_access"}, to);
}

void copyStoredCreation(const std::string& replaced, int to) {
  // As the drivers of NTFS and of Windows shares give it.
  copyStoredOf(replaced, {"system.ntfs_crtime", "user.cifs.creationtime"}, to);
}

}  // namespace skv
