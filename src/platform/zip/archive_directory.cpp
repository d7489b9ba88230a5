#include "platform/zip/archive_directory.h"

#include <algorithm>

#include "platform/zip/entry_names.h"
#include "platform/zip/foreign_methods.h"

namespace skv {

namespace {

// Of extra fields.
constexpr std::uint16_t extendedTimestampField = 0x5455;  // seconds since 1970, UTC
constexpr std::uint16_t ntfsTimes = 0x000a;               // 100 ns since 1601, UTC
constexpr std::uint16_t oldUnixTimes = 0x5855;            // seconds of access and change

std::uint64_t littleEndian(const zip_uint8_t* bytes, int count) {
  std::uint64_t value = 0;
  for (int i = count - 1; i >= 0; --i) value = value << 8U | bytes[i];
  return value;
}

struct ExtraField {
  const zip_uint8_t* data = nullptr;
  zip_uint16_t size = 0;
};

ExtraField extraField(zip_t* archive, zip_uint64_t index, std::uint16_t id) {
  for (const zip_flags_t where : {ZIP_FL_CENTRAL, ZIP_FL_LOCAL}) {
    ExtraField field;
    field.data = zip_file_extra_field_get_by_id(archive, index, id, 0, &field.size, where);
    if (field.data != nullptr) return field;
  }
  return {};
}

std::optional<FileTime> timeOf(zip_t* archive, zip_uint64_t index, const zip_stat_t& status) {
  // Tag 1 of the NTFS field holds the times of change, access and making.
  constexpr zip_uint16_t reserved = 4, tagHeader = 4, times = 24;
  constexpr std::int64_t unitsOfSecond = 10'000'000, secondsBefore1970 = 11'644'473'600;
  if (const ExtraField ntfs = extraField(archive, index, ntfsTimes);
      ntfs.size >= reserved + tagHeader + times && littleEndian(ntfs.data + reserved, 2) == 1) {
    const auto units = static_cast<std::int64_t>(littleEndian(ntfs.data + reserved + tagHeader, 8));
    if (units > 0)
      return FileTime{units / unitsOfSecond - secondsBefore1970,
                      static_cast<std::int32_t>(units % unitsOfSecond * 100)};
  }
  if (const ExtraField field = extraField(archive, index, extendedTimestampField);
      field.size >= 5 && (field.data[0] & 1U) != 0)
    return FileTime{static_cast<std::int32_t>(littleEndian(field.data + 1, 4)), 0};
  if (const ExtraField field = extraField(archive, index, oldUnixTimes); field.size >= 8)
    return FileTime{static_cast<std::int32_t>(littleEndian(field.data + 4, 4)), 0};
  // The time of DOS begins in 1980: what is earlier was no date. Up to a day for the time zone.
  constexpr time_t firstDosDay = 315'532'800 - 86'400;
  if ((status.valid & ZIP_STAT_MTIME) != 0 && status.mtime >= firstDosDay)
    return FileTime{status.mtime, 0};
  return std::nullopt;
}

enum class EntryKind { file, folder, special };

// By what the maker's system noted; the name tells the rest.
EntryKind kindOf(int host, zip_uint32_t attributes, std::uint64_t size) {
  constexpr zip_uint32_t typeMask = 0170000, unixFolder = 0040000, unixLink = 0120000,
                         unixCharacters = 0020000, unixBlocks = 0060000, dosFolder = 0x10;
  const zip_uint32_t type = (attributes >> 16U) & typeMask;
  const bool knowsTypes = host == ZIP_OPSYS_UNIX || host == ZIP_OPSYS_OS_X;
  if (type == unixLink) return EntryKind::special;
  // A pipe is what somebody has packed from, and its data a file.
  if (knowsTypes && (type == unixCharacters || type == unixBlocks)) return EntryKind::special;
  const bool folder = knowsTypes ? type == unixFolder : (attributes & dosFolder) != 0;
  return folder && size == 0 ? EntryKind::folder : EntryKind::file;
}

}  // namespace

Result<std::vector<ArchiveEntry>> readDirectory(const ArchiveFile& file, const ZipReader& reader,
                                                const CodePage& systemPage) {
  zip_t* const archive = reader.get();
  const auto count =
      static_cast<std::size_t>(std::max<zip_int64_t>(zip_get_num_entries(archive, 0), 0));
  std::vector<ArchiveEntry> entries;
  entries.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    zip_stat_t status;
    zip_stat_init(&status);
    if (zip_stat_index(archive, i, ZIP_FL_ENC_RAW, &status) != 0)
      return Outcome::withText(err::zip, "The directory of \"" + file.shown() + "\" is damaged.");
    zip_uint8_t host = 0;
    zip_uint32_t attributes = 0;
    zip_file_get_external_attributes(archive, i, 0, &host, &attributes);
    const EntryKind kind = kindOf(host, attributes, status.size);
    ArchiveEntry entry;
    // A field that repeats the name in UTF-8 has taken its place already.
    entry.Filename = decodeEntryName(status.name, host, systemPage);
    if (kind == EntryKind::folder && !isFolderName(entry.Filename)) entry.Filename += '/';
    entry.size = status.size;
    entry.packed = status.comp_size;
    entry.crc = status.crc;
    entry.method = status.comp_method;
    entry.encrypted = status.encryption_method != ZIP_EM_NONE;
    entry.special = kind == EntryKind::special;
    entry.modified = timeOf(archive, i, status);
    entries.push_back(std::move(entry));
  }
  return entries;
}

namespace {

// Deflate cannot grow by more than 1032; the head start is for what is nearly empty. Blank pictures
// come close to that, and there are add-ons of nothing else, but these stay smaller than
// `largeEntry`.
constexpr std::uint64_t mostGrowth = 1032, headStart = 1024;
constexpr std::uint64_t largeEntry = std::uint64_t{512} << 20U, mostGrowthOfLarge = 400;

bool isAbsurd(std::uint64_t size, std::uint64_t packed) {
  return size > largeEntry && size / mostGrowthOfLarge > packed;
}

const char* faultOf(const ArchiveEntry& entry) {
  if (entry.encrypted) return "is encrypted";
  if (entry.special) return "is a link or a device";
  if (zip_compression_method_supported(entry.method, 0) == 0 && !isForeignMethod(entry.method))
    return "is packed by a method that is unknown here";
  if (isForeignMethod(entry.method) &&
      (entry.packed > ForeignStream::mostPacked || entry.size > ForeignStream::mostUnpacked))
    return "is too large for the method by which it is packed";
  if (entry.method == ZIP_CM_STORE && entry.size != entry.packed)
    return "is corrupt: its two sizes contradict each other";
  if ((entry.method == ZIP_CM_DEFLATE && entry.size / mostGrowth > entry.packed + headStart) ||
      isAbsurd(entry.size, entry.packed))
    return "claims a size that its data cannot have";
  return nullptr;
}

}  // namespace

Outcome auditArchive(const ArchiveFile& file, const ZipReader& reader,
                     std::vector<ChosenEntry>& chosen) {
  const auto fails = [&](const ArchiveEntry& entry, const char* fault) {
    return entryFailure(file.shown(), entry.Filename, fault);
  };
  constexpr std::uint64_t localHeader = 30;  // without name and fields
  struct Range {
    std::uint64_t begin, end;
    const ArchiveEntry* entry;
  };
  std::vector<Range> ranges;
  std::uint64_t total = 0, packed = 0;
  for (ChosenEntry& one : chosen) {
    const ArchiveEntry& entry = *one.entry;
    if (const char* fault = faultOf(entry)) return fails(entry, fault);
    total += std::min(entry.size, UINT64_MAX - total);
    packed += std::min(entry.packed, UINT64_MAX - packed);
    if (entry.packed == 0) continue;
    const auto data = reader.dataOf(one.index);
    if (!data || *data < localHeader || *data > file.length() ||
        entry.packed > file.length() - *data)
      return fails(entry, "is corrupt: its data is not in the file");
    one.data = *data;
    ranges.push_back({*data - localHeader, *data + entry.packed, &entry});
  }
  std::ranges::sort(ranges, {}, &Range::begin);
  for (std::size_t i = 1; i < ranges.size(); ++i)
    if (ranges[i].begin < ranges[i - 1].end)
      return fails(*ranges[i].entry, "overlaps another entry");
  if (isAbsurd(total, packed))
    return Outcome::withText(err::zip, "\"" + file.shown() + "\" would grow to an absurd size.");
  return {};
}

}  // namespace skv
