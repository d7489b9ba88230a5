#include "platform/libzip_archive.h"

#include <libdeflate.h>

#include <algorithm>
#include <array>
#include <ctime>

#include "platform/libzip_names.h"
#include "platform/zip_directory.h"

namespace skv {

namespace {

constexpr std::uint16_t extendedTimestamp = 0x5455; // seconds since 1970, UTC
constexpr std::uint16_t ntfsTimes = 0x000a;         // 100 ns since 1601, UTC
constexpr std::uint16_t unicodePath = 0x7075;       // the name again, in UTF-8

constexpr zip_uint32_t unixTypeMask = 0170000, unixFile = 0100000,
                       unixFolder = 0040000;

struct ExtraField {
  const zip_uint8_t *data = nullptr;
  zip_uint16_t size = 0;
};

ExtraField extraField(zip_t *archive, zip_uint64_t index, std::uint16_t id) {
  for (const zip_flags_t where : {ZIP_FL_CENTRAL, ZIP_FL_LOCAL}) {
    ExtraField field;
    field.data = zip_file_extra_field_get_by_id(archive, index, id, 0,
                                                &field.size, where);
    if (field.data != nullptr)
      return field;
  }
  return {};
}

std::optional<FileTime> fineTime(zip_t *archive, zip_uint64_t index) {
  // Tag 1 of the NTFS field holds the times of change, access and making.
  constexpr zip_uint16_t reserved = 4, tagHeader = 4, times = 24;
  constexpr std::int64_t unitsOfSecond = 10'000'000,
                         secondsBefore1970 = 11'644'473'600;
  if (const ExtraField ntfs = extraField(archive, index, ntfsTimes);
      ntfs.size >= reserved + tagHeader + times &&
      littleEndian(ntfs.data + reserved, 2) == 1) {
    const auto units = static_cast<std::int64_t>(
        littleEndian(ntfs.data + reserved + tagHeader, 8));
    if (units > 0)
      return FileTime{units / unitsOfSecond - secondsBefore1970,
                      static_cast<std::int32_t>(units % unitsOfSecond * 100)};
  }
  if (const ExtraField field = extraField(archive, index, extendedTimestamp);
      field.size >= 5 && (field.data[0] & 1U) != 0)
    return FileTime{static_cast<std::int32_t>(littleEndian(field.data + 1, 4)),
                    0};
  return std::nullopt;
}

std::string nameOf(zip_t *archive, zip_uint64_t index, int host,
                   bool flaggedUtf8, const CodePage &systemPage) {
  const char *raw = zip_get_name(archive, index, ZIP_FL_ENC_RAW);
  StoredName stored;
  if (raw != nullptr)
    stored.bytes = raw;
  stored.flaggedUtf8 = flaggedUtf8;
  stored.hostSystem = host;
  // The field holds as long as the name that it was made for has not been
  // changed since.
  if (const ExtraField field = extraField(archive, index, unicodePath);
      field.size > 5 && field.data[0] == 1 &&
      littleEndian(field.data + 1, 4) ==
          libdeflate_crc32(0, stored.bytes.data(), stored.bytes.size()))
    stored.unicodeName.assign(reinterpret_cast<const char *>(field.data) + 5,
                              static_cast<std::size_t>(field.size - 5));
  return decodeEntryName(stored, systemPage);
}

std::string zipErrorText(zip_error_t &error) {
  std::string text = zip_error_strerror(&error);
  zip_error_fini(&error);
  return text;
}

} // namespace

Outcome entryFailure(const std::string &archive, const std::string &entry,
                     const std::string &what) {
  return Outcome::withText(err::zip, "\"" + entry + "\" in \"" + archive +
                                         "\" " + what + ".");
}

Result<ZipHandle> openZip(const std::string &native, const std::string &shown) {
  int code = 0;
  if (zip_t *archive = zip_open(native.c_str(), ZIP_RDONLY, &code))
    return ZipHandle(archive);
  zip_error_t error;
  zip_error_init_with_code(&error, code);
  return Outcome::withText(err::zip, "\"" + shown + "\" cannot be opened: " +
                                         zipErrorText(error) + ".");
}

Result<std::vector<ArchiveEntry>> readDirectory(zip_t *archive,
                                                const std::string &native,
                                                const std::string &shown,
                                                const CodePage &systemPage) {
  const auto count = static_cast<std::size_t>(
      std::max<zip_int64_t>(zip_get_num_entries(archive, 0), 0));
  CentralDirectory directory(native);
  std::vector<CentralRecord> records;
  if (!directory.read(records) || records.size() != count)
    return Outcome::withText(err::zip,
                             "The directory of \"" + shown + "\" is damaged.");
  std::vector<ArchiveEntry> entries;
  entries.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    zip_stat_t status;
    zip_stat_init(&status);
    if (zip_stat_index(archive, i, ZIP_FL_ENC_RAW, &status) != 0)
      return Outcome::withText(err::zip, "The directory of \"" + shown +
                                             "\" is damaged.");
    zip_uint8_t host = 0;
    zip_uint32_t attributes = 0;
    zip_file_get_external_attributes(archive, i, 0, &host, &attributes);
    ArchiveEntry entry;
    entry.Filename = nameOf(archive, i, host, records[i].utf8, systemPage);
    entry.size = status.size;
    entry.crc = status.crc;
    entry.method = status.comp_method;
    entry.encrypted = status.encryption_method != ZIP_EM_NONE;
    const zip_uint32_t type = (attributes >> 16U) & unixTypeMask;
    const bool knowsTypes = host == ZIP_OPSYS_UNIX || host == ZIP_OPSYS_OS_X;
    entry.special =
        knowsTypes && type != 0 && type != unixFile && type != unixFolder;
    entry.modified = fineTime(archive, i);
    if (!entry.modified && (status.valid & ZIP_STAT_MTIME) != 0 &&
        status.mtime > 0)
      entry.modified = FileTime{status.mtime, 0};
    const std::uint64_t data = directory.dataOffset(records[i].offset);
    const bool inFile = data != 0 && data <= directory.start() &&
                        records[i].packed <= directory.start() - data;
    entry.begin = records[i].offset;
    entry.end = inFile ? data + records[i].packed : 0;
    entry.packed = records[i].packed;
    entries.push_back(std::move(entry));
  }
  return entries;
}

Outcome auditArchive(const std::string &shown,
                     const std::vector<const ArchiveEntry *> &entries) {
  // Deflate cannot grow by more; the constant is for what is nearly empty.
  constexpr std::uint64_t mostGrowth = 1032, headStart = 1024;
  constexpr std::uint64_t largeTotal = std::uint64_t{1} << 30U,
                          largeGrowth = 500;
  std::uint64_t total = 0, packed = 0;
  for (const ArchiveEntry *entry : entries) {
    const auto fails = [&](const char *what) {
      return entryFailure(shown, entry->Filename, what);
    };
    if (entry->encrypted)
      return fails("is encrypted");
    if (entry->special)
      return fails("is a link or a device");
    if (entry->end == 0)
      return fails("lies outside the file");
    if (zip_compression_method_supported(entry->method, 0) == 0)
      return fails("is packed by an unknown method");
    if (entry->method == ZIP_CM_DEFLATE &&
        entry->size / mostGrowth > entry->packed + headStart)
      return fails("claims a size that its data cannot have");
    total += entry->size;
    packed += entry->packed;
  }
  std::vector<const ArchiveEntry *> byPlace = entries;
  std::ranges::sort(byPlace, {}, &ArchiveEntry::begin);
  for (std::size_t i = 1; i < byPlace.size(); ++i)
    if (byPlace[i]->begin < byPlace[i - 1]->end)
      return entryFailure(shown, byPlace[i]->Filename,
                          "overlaps another entry");
  if (total > largeTotal && total / largeGrowth > packed)
    return Outcome::withText(err::zip,
                             "\"" + shown + "\" would grow to an absurd size.");
  return {};
}

} // namespace skv
