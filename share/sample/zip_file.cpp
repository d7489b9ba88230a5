#include "sample/zip_file.h"

#include <zip.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <set>
#include <stdexcept>

#include "base/text.h"

namespace skv::sample {
namespace {

// The upper half of code page 437 as far as the sample's names need it.
std::string codePage437(std::string_view text) {
  static constexpr std::pair<std::string_view, unsigned char> letters[] = {
      {"é", 0x82}, {"ä", 0x84}, {"ö", 0x94}, {"ü", 0x81}, {"Ä", 0x8e}, {"Ö", 0x99},
      {"Ü", 0x9a}, {"ß", 0xe1}, {"è", 0x8a}, {"ê", 0x88}, {"ñ", 0xa4}, {"å", 0x86}};
  std::string out;
  for (std::size_t i = 0; i < text.size();) {
    const auto* it = std::find_if(std::begin(letters), std::end(letters), [&](const auto& letter) {
      return text.substr(i).starts_with(letter.first);
    });
    if (it != std::end(letters)) {
      out += static_cast<char>(it->second);
      i += it->first.size();
    } else {
      if (static_cast<unsigned char>(text[i]) > 0x7f)
        throw std::logic_error("a letter that the table lacks: " + std::string(text));
      out += text[i++];
    }
  }
  return out;
}

std::string storedName(std::string path, const ZipStyle& style) {
  if (style.backslashes) std::replace(path.begin(), path.end(), '/', '\\');
  switch (style.names) {
    case ZipStyle::Names::utf8:
      return path;
    case ZipStyle::Names::codePage437:
      return codePage437(path);
    case ZipStyle::Names::windows1252:
      return CodePage(1252).encode(path);
  }
  return path;
}

// One entry as libzip asks for it.
struct Stream {
  std::function<std::string()> make;
  std::string bytes;
  std::size_t read = 0;

  static zip_int64_t call(void* self, void* data, zip_uint64_t length, zip_source_cmd_t command) {
    auto& stream = *static_cast<Stream*>(self);
    switch (command) {
      case ZIP_SOURCE_OPEN:
        stream.bytes = stream.make();
        stream.read = 0;
        return 0;
      case ZIP_SOURCE_READ: {
        const std::size_t count = std::min(length, stream.bytes.size() - stream.read);
        std::memcpy(data, stream.bytes.data() + stream.read, count);
        stream.read += count;
        return static_cast<zip_int64_t>(count);
      }
      case ZIP_SOURCE_CLOSE:
        stream.bytes = {};
        return 0;
      case ZIP_SOURCE_STAT:
        zip_stat_init(static_cast<zip_stat_t*>(data));
        return sizeof(zip_stat_t);
      case ZIP_SOURCE_ERROR:
        return zip_error_to_data(nullptr, data, length);
      case ZIP_SOURCE_FREE:
        delete &stream;
        return 0;
      case ZIP_SOURCE_SUPPORTS:
        return zip_source_make_command_bitmap(ZIP_SOURCE_OPEN, ZIP_SOURCE_READ, ZIP_SOURCE_CLOSE,
                                              ZIP_SOURCE_STAT, ZIP_SOURCE_ERROR, ZIP_SOURCE_FREE,
                                              -1);
      default:
        return -1;
    }
  }
};

class Archive {
 public:
  // A file, or, with an empty name, the memory behind `source`.
  explicit Archive(std::string name, zip_source_t* source = nullptr) : name_(std::move(name)) {
    int code = 0;
    zip_ = source == nullptr ? zip_open(name_.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &code)
                             : zip_open_from_source(source, ZIP_TRUNCATE, nullptr);
    if (zip_ == nullptr) throw std::runtime_error("cannot make the archive " + name_);
  }
  ~Archive() {
    if (zip_ != nullptr) zip_discard(zip_);
  }
  Archive(const Archive&) = delete;
  Archive& operator=(const Archive&) = delete;

  void addFolder(const std::string& name, zip_flags_t encoding) {
    stamp(check(zip_dir_add(zip_, name.c_str(), encoding)), 0x10);
  }
  void addFile(const std::string& name, zip_flags_t encoding, std::function<std::string()> bytes,
               int level) {
    auto stream = std::make_unique<Stream>(Stream{std::move(bytes), {}, 0});
    zip_source_t* source = zip_source_function(zip_, &Stream::call, stream.get());
    if (source == nullptr) fail();
    static_cast<void>(stream.release());  // libzip's from here on
    const zip_int64_t index = zip_file_add(zip_, name.c_str(), source, encoding);
    if (index < 0) zip_source_free(source);
    check(index);
    const auto number = static_cast<zip_uint64_t>(index);
    check(zip_set_file_compression(zip_, number, level == 0 ? ZIP_CM_STORE : ZIP_CM_DEFLATE,
                                   static_cast<zip_uint32_t>(level)));
    stamp(index, 0x20);
  }
  void close() {
    check(zip_close(zip_));
    zip_ = nullptr;
  }

 private:
  // As a Windows packer leaves it: made on DOS, attributes in DOS form.
  void stamp(zip_int64_t index, zip_uint32_t attributes) {
    constexpr zip_uint16_t eveningAtSix = 18 << 11, christmasEve2002 = 22 << 9 | 12 << 5 | 24;
    const auto number = static_cast<zip_uint64_t>(index);
    check(zip_file_set_dostime(zip_, number, eveningAtSix, christmasEve2002, 0));
    check(zip_file_set_external_attributes(zip_, number, 0, ZIP_OPSYS_DOS, attributes));
  }
  zip_int64_t check(zip_int64_t result) {
    if (result < 0) fail();
    return result;
  }
  [[noreturn]] void fail() {
    throw std::runtime_error(name_ + ": " + zip_error_strerror(zip_get_error(zip_)));
  }

  std::string name_;
  zip_t* zip_ = nullptr;
};

void fill(Archive& archive, const std::vector<ZipEntrySource>& entries, const ZipStyle& style) {
  const zip_flags_t encoding =
      style.names == ZipStyle::Names::utf8 ? ZIP_FL_ENC_UTF_8 : ZIP_FL_ENC_CP437;
  std::set<std::string> folders;
  for (const ZipEntrySource& entry : entries) {
    for (std::size_t i = 0; style.folderEntries && i < entry.path.size(); ++i) {
      if (entry.path[i] == '/' && folders.insert(entry.path.substr(0, i)).second)
        archive.addFolder(storedName(entry.path.substr(0, i), style), encoding);
    }
    archive.addFile(storedName(entry.path, style), encoding, entry.bytes, style.level);
  }
  archive.close();
}

std::vector<ZipEntrySource> sources(const Files& files) {
  std::vector<ZipEntrySource> entries;
  entries.reserve(files.size());
  for (const SampleFile& it : files) entries.push_back({it.path, [&it] { return it.bytes; }});
  return entries;
}

}  // namespace

void writeZip(const std::filesystem::path& file, const std::vector<ZipEntrySource>& entries,
              const ZipStyle& style) {
  std::filesystem::create_directories(file.parent_path());
  Archive archive(file.string());
  fill(archive, entries, style);
}

void writeZip(const std::filesystem::path& file, const Files& files, const ZipStyle& style) {
  writeZip(file, sources(files), style);
}

std::string zipBytes(const Files& files, const ZipStyle& style) {
  const std::unique_ptr<zip_source_t, decltype(&zip_source_free)> memory(
      zip_source_buffer_create(nullptr, 0, 0, nullptr), &zip_source_free);
  zip_source_keep(memory.get());  // the archive gives back a reference of its own
  Archive archive({}, memory.get());
  fill(archive, sources(files), style);

  zip_stat_t stat;
  zip_stat_init(&stat);
  if (zip_source_stat(memory.get(), &stat) != 0 || zip_source_open(memory.get()) != 0)
    throw std::runtime_error("an archive in memory is not readable");
  std::string bytes(stat.size, '\0');
  const zip_int64_t got = zip_source_read(memory.get(), bytes.data(), bytes.size());
  zip_source_close(memory.get());
  if (got != static_cast<zip_int64_t>(bytes.size()))
    throw std::runtime_error("an archive in memory ends too soon");
  return bytes;
}

}  // namespace skv::sample
