#include "platform/wmf/metafile.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <initializer_list>

namespace skv {

namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::size_t placeableLength = 22, headerLength = 18, recordHead = 6;
constexpr double dotsPerInch = 96;

enum Function : int {
  endOfFile = 0,
  setMapMode = 0x0103,
  setWindowOrg = 0x020B,
  setWindowExt = 0x020C,
  setViewportOrg = 0x020D,
  setViewportExt = 0x020E,
  offsetViewportOrg = 0x0211,
  scaleViewportExt = 0x0412,
  textOut = 0x0521,
  textOutInBox = 0x0A32,
};

int wordAt(Bytes bytes, std::size_t at) { return bytes[at] | bytes[at + 1] << 8; }
int signedAt(Bytes bytes, std::size_t at) { return static_cast<std::int16_t>(wordAt(bytes, at)); }
std::uint32_t longAt(Bytes bytes, std::size_t at) {
  return static_cast<std::uint32_t>(wordAt(bytes, at)) |
         static_cast<std::uint32_t>(wordAt(bytes, at + 2)) << 16;
}

void putWord(std::vector<std::uint8_t>& bytes, int word) {
  bytes.push_back(static_cast<std::uint8_t>(word));
  bytes.push_back(static_cast<std::uint8_t>(word >> 8));
}
void putLong(std::vector<std::uint8_t>& bytes, std::size_t value) {
  putWord(bytes, static_cast<int>(value & 0xFFFF));
  putWord(bytes, static_cast<int>(value >> 16 & 0xFFFF));
}
void putRecord(std::vector<std::uint8_t>& bytes, Function function,
               std::initializer_list<int> words) {
  putLong(bytes, 3 + words.size());
  putWord(bytes, function);
  for (const int word : words) putWord(bytes, word);
}

struct Record {
  int function;
  Bytes bytes;  // with its head
};

// Up to the last one; none when that is missing.
std::optional<std::vector<Record>> recordsOf(Bytes bytes) {
  std::vector<Record> records;
  for (std::size_t at = 0; at + recordHead <= bytes.size();) {
    const std::size_t length = std::size_t{longAt(bytes, at)} * 2;
    if (length < recordHead || length > bytes.size() - at) return std::nullopt;
    records.push_back({wordAt(bytes, at + 4), bytes.subspan(at, length)});
    if (records.back().function == endOfFile) return records;
    at += length;
  }
  return std::nullopt;
}

// The part of the logical plane that is the picture, and its size in pixels.
struct Frame {
  int left = 0, top = 0, width = 0, height = 0;
  double pixelsWide = 0, pixelsHigh = 0;
  bool known() const { return width != 0 && height != 0; }
};

Frame placeableFrame(Bytes header) {
  Frame frame;
  frame.left = signedAt(header, 6);
  frame.top = signedAt(header, 8);
  frame.width = signedAt(header, 10) - frame.left;
  frame.height = signedAt(header, 12) - frame.top;
  const int inch = wordAt(header, 14);
  const double scale = inch > 0 ? dotsPerInch / inch : 1;
  frame.pixelsWide = std::abs(frame.width) * scale;
  frame.pixelsHigh = std::abs(frame.height) * scale;
  return frame;
}

// The first window that the records themselves set up; its units are taken for pixels.
Frame windowFrame(const std::vector<Record>& records) {
  Frame frame;
  for (const Record& record : records) {
    if (record.bytes.size() < recordHead + 4) continue;
    const int y = signedAt(record.bytes, recordHead), x = signedAt(record.bytes, recordHead + 2);
    if (record.function == setWindowOrg && frame.left == 0 && frame.top == 0) {
      frame.left = x;
      frame.top = y;
    } else if (record.function == setWindowExt && !frame.known()) {
      frame.width = x;
      frame.height = y;
      frame.pixelsWide = std::abs(x);
      frame.pixelsHigh = std::abs(y);
    }
  }
  return frame;
}

// Modes that count in fixed measures say how large the picture is by what they draw alone.
bool isMetric(const Record& record) {
  constexpr int lowMetric = 2, twips = 6;
  if (record.function != setMapMode || record.bytes.size() < recordHead + 2) return false;
  const int mode = wordAt(record.bytes, recordHead);
  return mode >= lowMetric && mode <= twips;
}

// Where the picture goes is ours to say.
bool placesPicture(int function) {
  return function == setMapMode || function == setViewportOrg || function == setViewportExt ||
         function == offsetViewportOrg || function == scaleViewportExt;
}

}  // namespace

std::optional<Metafile> readMetafile(Bytes file, int longestSide, bool letters) {
  constexpr std::uint32_t placeableMagic = 0x9AC6CDD7;
  Frame frame;
  if (file.size() >= placeableLength && longAt(file, 0) == placeableMagic) {
    frame = placeableFrame(file);
    file = file.subspan(placeableLength);
  }
  if (file.size() < headerLength || std::size_t{2} * wordAt(file, 2) != headerLength)
    return std::nullopt;
  const auto records = recordsOf(file.subspan(headerLength));
  if (!records) return std::nullopt;
  if (!frame.known()) frame = windowFrame(*records);
  const bool framed = frame.known() && std::ranges::none_of(*records, isMetric);

  Metafile result;
  if (framed) {
    const double longest = std::max(frame.pixelsWide, frame.pixelsHigh);
    const double scale = std::min(1.0, longestSide / longest);
    result.width = std::max(1, static_cast<int>(std::lround(frame.pixelsWide * scale)));
    result.height = std::max(1, static_cast<int>(std::lround(frame.pixelsHigh * scale)));
  }
  std::vector<std::uint8_t> body;
  if (framed) {
    constexpr int anisotropic = 8;
    putRecord(body, setMapMode, {anisotropic});
    putRecord(body, setViewportOrg, {0, 0});
    putRecord(body, setViewportExt, {result.height, result.width});
    putRecord(body, setWindowOrg, {frame.top, frame.left});
    putRecord(body, setWindowExt, {frame.height, frame.width});
  }
  std::size_t largest = 0;
  for (const Record& record : *records) {
    if (framed && placesPicture(record.function)) continue;
    if (!letters && (record.function == textOut || record.function == textOutInBox)) continue;
    largest = std::max(largest, record.bytes.size() / 2);
    body.insert(body.end(), record.bytes.begin(), record.bytes.end());
  }
  putWord(result.bytes, 1);
  putWord(result.bytes, headerLength / 2);
  putWord(result.bytes, 0x0300);
  putLong(result.bytes, (headerLength + body.size()) / 2);
  putWord(result.bytes, wordAt(file, 10));
  putLong(result.bytes, std::max<std::size_t>(largest, 5));
  putWord(result.bytes, 0);
  result.bytes.insert(result.bytes.end(), body.begin(), body.end());
  return result;
}

}  // namespace skv
