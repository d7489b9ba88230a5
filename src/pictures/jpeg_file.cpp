#include "pictures/jpeg_file.h"

#include <array>
#include <csetjmp>
#include <cstdio>
#include <new>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include <jpeglib.h>
// After it:
#include <jerror.h>

namespace skv {

namespace {

// A picture being encoded. The library leaves by longjmp where it fails, so that nothing in the
// functions that it jumps over may have a destructor.
class Encoder {
 public:
  Encoder() = default;
  Encoder(const Encoder&) = delete;
  Encoder& operator=(const Encoder&) = delete;
  ~Encoder() { jpeg_destroy_compress(&info_); }

  bool start() {
    info_.err = jpeg_std_error(&errors_);
    info_.client_data = this;
    errors_.error_exit = [](j_common_ptr info) {
      std::longjmp(static_cast<Encoder*>(info->client_data)->failed_, 1);
    };
    errors_.output_message = [](j_common_ptr) {};
    target_.init_destination = [](j_compress_ptr) {};
    target_.empty_output_buffer = [](j_compress_ptr info) -> boolean {
      auto& encoder = *static_cast<Encoder*>(info->client_data);
      if (!encoder.makeRoom(encoder.content_.size())) ERREXIT1(info, JERR_OUT_OF_MEMORY, 0);
      return TRUE;
    };
    target_.term_destination = [](j_compress_ptr info) {
      auto& encoder = *static_cast<Encoder*>(info->client_data);
      encoder.content_.resize(encoder.content_.size() - encoder.target_.free_in_buffer);
    };
    if (setjmp(failed_) != 0) return false;
    jpeg_create_compress(&info_);
    return true;
  }

  // `rows` from the top of the picture, each of blue, green, red for a pixel.
  bool encode(std::span<JSAMPROW> rows, JDIMENSION width, int quality) {
    if (setjmp(failed_) != 0) return false;
    info_.dest = &target_;
    if (!makeRoom(firstRoom)) ERREXIT1(&info_, JERR_OUT_OF_MEMORY, 0);
    info_.image_width = width;
    info_.image_height = static_cast<JDIMENSION>(rows.size());
    info_.input_components = 3;
    info_.in_color_space = JCS_EXT_BGR;
    jpeg_set_defaults(&info_);
    jpeg_set_quality(&info_, quality, TRUE);
    jpeg_start_compress(&info_, TRUE);
    while (info_.next_scanline < info_.image_height)
      jpeg_write_scanlines(&info_, &rows[info_.next_scanline],
                           info_.image_height - info_.next_scanline);
    jpeg_finish_compress(&info_);
    return true;
  }

  const std::string& content() const { return content_; }

  // Why start() or encode() answered false.
  std::string reason() {
    std::array<char, JMSG_LENGTH_MAX> text{};
    errors_.format_message(reinterpret_cast<j_common_ptr>(&info_), text.data());
    return std::to_string(errors_.msg_code) + ": " + text.data();
  }

 private:
  static constexpr std::size_t firstRoom = 65536;

  // So many bytes more, behind what is full.
  bool makeRoom(std::size_t bytes) {
    const std::size_t full = content_.size();
    try {
      content_.resize(full + bytes);
    } catch (const std::bad_alloc&) {
      return false;
    } catch (const std::length_error&) {
      return false;
    }
    target_.next_output_byte = reinterpret_cast<JOCTET*>(content_.data() + full);
    target_.free_in_buffer = bytes;
    return true;
  }

  jpeg_compress_struct info_{};
  jpeg_error_mgr errors_{};
  jpeg_destination_mgr target_{};
  std::jmp_buf failed_{};
  std::string content_;
};

// The library only reads them, and yet wants them writable.
std::vector<JSAMPROW> rowsFromTop(const cDIBSection& dib) {
  std::vector<JSAMPROW> rows(static_cast<std::size_t>(dib.Height()));
  auto* row = const_cast<JSAMPROW>(dib.DIBSectionBitsPtr());
  for (auto next = rows.rbegin(); next != rows.rend(); ++next, row += dib.BytesPerScanLine())
    *next = row;
  return rows;
}

Outcome failedToSave(const std::string& reason) {
  return Outcome::withText(jpegError, "Failed to save to JPG " + reason);
}

}  // namespace

Outcome SaveJPEGFile(FileSystem& files, const cDIBSection& dib, std::string_view file,
                     int quality) {
  Encoder encoder;
  if (!encoder.start())
    return Outcome::withText(jpegError,
                             "Failed to initialise the IJL library: " + encoder.reason());
  std::vector<JSAMPROW> rows = rowsFromTop(dib);
  if (!encoder.encode(rows, static_cast<JDIMENSION>(dib.Width()), quality))
    return failedToSave(encoder.reason());
  const Outcome written = files.replaceContent(file, encoder.content());
  if (written.ok()) return {};
  return failedToSave(std::to_string(written.number()) + ": " + written.description());
}

}  // namespace skv
