#include "base/text.h"

#include <unicode/bytestream.h>
#include <unicode/normalizer2.h>
#include <unicode/translit.h>
#include <unicode/uchar.h>
#include <unicode/ucnv.h>
#include <unicode/ucnv_err.h>
#include <unicode/utf8.h>

#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <memory>
#include <unordered_map>
#include <unordered_set>

namespace skv {

namespace {

// Eight bytes at a time: whole files are asked about.
bool isAscii(std::string_view text) {
  std::uint64_t eight = 0;
  for (; text.size() >= sizeof eight; text.remove_prefix(sizeof eight)) {
    std::memcpy(&eight, text.data(), sizeof eight);
    if ((eight & 0x8080808080808080) != 0) return false;
  }
  for (const char c : text)
    if (static_cast<unsigned char>(c) >= 0x80) return false;
  return true;
}

char upperAscii(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

void appendUtf8(std::string& text, UChar32 character) {
  char bytes[U8_MAX_LENGTH];
  int32_t length = 0;
  U8_APPEND_UNSAFE(bytes, length, character);
  text.append(bytes, static_cast<std::size_t>(length));
}

// Reads the character at `i` and moves on; negative for a byte that is no UTF-8, which it passes.
UChar32 nextUtf8(std::string_view text, int32_t& i) {
  const int32_t start = i;
  UChar32 character = 0;
  U8_NEXT(reinterpret_cast<const uint8_t*>(text.data()), i, static_cast<int32_t>(text.size()),
          character);
  if (character < 0) i = start + 1;
  return character;
}

// Bytes that a code page leaves undefined are held as these private characters, which no code page
// has a use for.
constexpr UChar32 privateBytes = 0x10FF00;

constexpr int utf8Page = 65001;

}  // namespace

bool isUtf8(std::string_view bytes) {
  for (int32_t i = 0; i < static_cast<int32_t>(bytes.size());)
    if (nextUtf8(bytes, i) < 0) return false;
  return true;
}

std::string upper(std::string_view text) {
  std::string result(text);
  if (isAscii(text)) {
    for (char& c : result) c = upperAscii(c);
    return result;
  }
  result.clear();
  for (int32_t i = 0; i < static_cast<int32_t>(text.size());) {
    const int32_t start = i;
    const UChar32 character = nextUtf8(text, i);
    if (character < 0)
      result += text[static_cast<std::size_t>(start)];
    else
      appendUtf8(result, u_toupper(character));
  }
  return result;
}

namespace {

// Sorting a long run of accents costs by the square of its length; no letter has as many.
bool hasPileOfAccents(std::string_view text) {
  constexpr int most = 64;
  int run = 0;
  for (int32_t i = 0; i < static_cast<int32_t>(text.size());) {
    const UChar32 character = nextUtf8(text, i);
    run = character >= 0 && u_getCombiningClass(character) != 0 ? run + 1 : 0;
    if (run > most) return true;
  }
  return false;
}

}  // namespace

std::string composed(std::string_view text) {
  std::string result;
  if (isAscii(text) || !isUtf8(text) || hasPileOfAccents(text)) return result = text;
  UErrorCode status = U_ZERO_ERROR;
  const icu::Normalizer2* const form = icu::Normalizer2::getNFCInstance(status);
  icu::StringByteSink<std::string> sink(&result);
  if (U_SUCCESS(status)) form->normalizeUTF8(0, text, sink, nullptr, status);
  if (U_FAILURE(status)) result = text;
  return result;
}

std::vector<std::string> characters(std::string_view text) {
  std::vector<std::string> result;
  for (int32_t i = 0; i < static_cast<int32_t>(text.size());) {
    const int32_t start = i;
    nextUtf8(text, i);
    result.emplace_back(
        text.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(i - start)));
  }
  return result;
}

std::string lowerAscii(std::string_view text) {
  std::string result(text);
  for (char& c : result)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return result;
}

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
  if (a == b) return true;
  return upper(a) == upper(b);
}

std::vector<std::string> split(std::string_view text, char separator) {
  std::vector<std::string> pieces;
  for (;;) {
    const auto end = text.find(separator);
    pieces.emplace_back(text.substr(0, end));
    if (end == std::string_view::npos) return pieces;
    text.remove_prefix(end + 1);
  }
}

std::string trim(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return std::string(text.substr(first, text.find_last_not_of(' ') - first + 1));
}

double val(std::string_view text) {
  // Only what can belong to a decimal number is handed on, so that no "inf" and no hexadecimal
  // gets in.
  std::string number;
  bool point = false;
  bool digits = false;
  bool exponent = false;
  for (const char c : text) {
    if (c == ' ' || c == '\t' || c == '\n' || c == '\r') continue;
    if (c >= '0' && c <= '9') {
      number += c;
      digits = true;
    } else if (c == '.' && !point && !exponent) {
      number += c;
      point = true;
    } else if ((c == '+' || c == '-') && (number.empty() || number.ends_with('e'))) {
      number += c;
    } else if ((upperAscii(c) == 'E' || upperAscii(c) == 'D') && digits && !exponent) {
      number += 'e';
      exponent = true;
    } else {
      break;
    }
  }
  // from_chars takes no plus, and gives nothing for what a double cannot hold.
  const char* start = number.data() + (number.starts_with('+') ? 1 : 0);
  double value = 0;
  std::from_chars(start, number.data() + number.size(), value);
  return value;
}

std::string decimal(double number) {
  constexpr int significant = 15;
  if (!std::isfinite(number) || number == 0) return "0";
  // "1.23450000000000e+04", whose point goes to its place.
  std::array<char, 32> buffer{};
  const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::abs(number),
                                     std::chars_format::scientific, significant - 1);
  const std::string_view scientific(buffer.data(), written.ptr);
  std::string digits(scientific.substr(0, 1));
  digits += scientific.substr(2, significant - 1);
  digits.erase(digits.find_last_not_of('0') + 1);
  const int beforePoint = std::stoi(std::string(scientific.substr(significant + 2))) + 1;

  if (beforePoint <= 0)
    digits.insert(0, "0." + std::string(static_cast<std::size_t>(-beforePoint), '0'));
  else if (const auto whole = static_cast<std::size_t>(beforePoint); digits.size() <= whole)
    digits.resize(whole, '0');
  else
    digits.insert(whole, 1, '.');
  return number < 0 ? "-" + digits : digits;
}

// The tables of a page, made once.
struct CodePage::Tables {
  std::array<UChar32, 256> characters{};
  // By lead byte and trail; negative where the two are no character. Empty for an 8-bit page.
  std::vector<UChar32> pairs;
  std::unordered_map<UChar32, std::string> bytes;
};

namespace {

struct ConverterCloser {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using Converter = std::unique_ptr<UConverter, ConverterCloser>;

// Null for a name that ICU does not know.
Converter openByName(const std::string& name) {
  UErrorCode status = U_ZERO_ERROR;
  Converter converter(ucnv_open(name.c_str(), &status));
  if (U_FAILURE(status)) return nullptr;
  ucnv_setFallback(converter.get(), 0);
  ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
  ucnv_setFromUCallBack(converter.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr,
                        &status);
  return converter;
}

// The one character that `bytes` are in the page, negative when they are none.
UChar32 characterOf(UConverter* converter, std::string_view bytes) {
  UErrorCode status = U_ZERO_ERROR;
  UChar units[4];
  ucnv_resetToUnicode(converter);
  const int32_t count =
      ucnv_toUChars(converter, units, 4, bytes.data(), static_cast<int32_t>(bytes.size()), &status);
  if (U_FAILURE(status) || count < 1) return -1;
  UChar32 character = 0;
  int32_t i = 0;
  U16_NEXT(units, i, count, character);
  return i == count && character != 0xFFFD ? character : -1;
}

// The bytes of a character, none when the page lacks it.
std::string bytesOf(UConverter* converter, UChar32 character) {
  UErrorCode status = U_ZERO_ERROR;
  UChar units[2];
  int32_t count = 0;
  U16_APPEND_UNSAFE(units, count, character);
  char bytes[16];
  ucnv_resetFromUnicode(converter);
  const int32_t length = ucnv_fromUChars(converter, bytes, sizeof bytes, units, count, &status);
  if (U_FAILURE(status)) return {};
  return std::string(bytes, static_cast<std::size_t>(length));
}

// A page of at most two bytes for a character, of which ASCII is the first half; other pages, which
// no Windows system has for its own, are replaced.
Converter openConverter(int number) {
  for (const char* prefix : {"windows-", "cp"}) {
    Converter converter = openByName(prefix + std::to_string(number));
    if (converter && ucnv_getMaxCharSize(converter.get()) <= 2 &&
        characterOf(converter.get(), "~") == U'~')
      return converter;
  }
  return openByName("windows-1252");
}

}  // namespace

CodePage::CodePage(int number) : number_(number) {
  if (number == utf8Page) return;
  const Converter converter = openConverter(number);
  auto tables = std::make_shared<Tables>();
  for (int byte = 0; byte < 256; ++byte) {
    const std::string one(1, static_cast<char>(byte));
    UChar32 character = byte < 0x80 ? byte : characterOf(converter.get(), one);
    if (character < 0) character = privateBytes + byte;
    tables->characters[static_cast<std::size_t>(byte)] = character;
    tables->bytes.emplace(character, one);
  }
  if (ucnv_getMaxCharSize(converter.get()) > 1) {
    tables->pairs.assign(0x10000, -1);
    for (int pair = 0x8000; pair < 0x10000; ++pair) {
      const std::string two{static_cast<char>(pair >> 8), static_cast<char>(pair)};
      if (tables->characters[static_cast<std::size_t>(pair >> 8)] != privateBytes + (pair >> 8))
        continue;
      const UChar32 character = characterOf(converter.get(), two);
      if (character < 0 || bytesOf(converter.get(), character) != two) continue;
      tables->pairs[static_cast<std::size_t>(pair)] = character;
      tables->bytes.emplace(character, two);
    }
  }
  tables_ = std::move(tables);
}

std::string CodePage::decode(std::string_view bytes) const {
  if (number_ == utf8Page || isAscii(bytes)) return std::string(bytes);
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const auto byte = static_cast<unsigned char>(bytes[i]);
    // A lead byte and its trail: only together they are a character.
    if (!tables_->pairs.empty() && byte >= 0x80 && i + 1 < bytes.size()) {
      const auto trail = static_cast<unsigned char>(bytes[i + 1]);
      if (const UChar32 pair = tables_->pairs[byte * 256U + trail]; pair >= 0) {
        appendUtf8(text, pair);
        ++i;
        continue;
      }
    }
    appendUtf8(text, tables_->characters[byte]);
  }
  return text;
}

std::string CodePage::lacking(std::string_view text) const {
  std::string missing;
  if (number_ == utf8Page || isAscii(text)) return missing;
  std::unordered_set<std::string_view> seen;
  for (int32_t i = 0; i < static_cast<int32_t>(text.size());) {
    const auto start = static_cast<std::size_t>(i);
    nextUtf8(text, i);
    const auto length = static_cast<std::size_t>(i) - start;
    const std::string_view character = text.substr(start, length);
    // A lead byte alone would become one character with what follows it.
    int32_t next = i;
    if (i < static_cast<int32_t>(text.size())) nextUtf8(text, next);
    const auto both = text.substr(start, static_cast<std::size_t>(next) - start);
    const bool kept = holds(character) && (holds(both) || !holds(both.substr(length)));
    if (!kept && seen.insert(character).second) missing += character;
  }
  return missing;
}

bool CodePage::holds(std::string_view text) const {
  return isAscii(text) || decode(encode(text)) == text;
}

std::string CodePage::encode(std::string&& text) const {
  if (number_ == utf8Page || isAscii(text)) return std::move(text);
  return encode(std::string_view(text));
}

std::string CodePage::encode(std::string_view text) const {
  if (number_ == utf8Page || isAscii(text)) return std::string(text);
  std::string bytes;
  for (int32_t i = 0; i < static_cast<int32_t>(text.size());) {
    const int32_t start = i;
    const UChar32 character = nextUtf8(text, i);
    if (character < 0)
      bytes += text[static_cast<std::size_t>(start)];
    else if (const auto found = tables_->bytes.find(character); found != tables_->bytes.end())
      bytes += found->second;
    else
      bytes += '?';
  }
  return bytes;
}

std::string storable(std::string_view text, const CodePage& page) {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::Transliterator> latin(
      icu::Transliterator::createInstance("Any-Latin; Latin-ASCII", UTRANS_FORWARD, status));
  std::string result, last;
  // Half of a character becomes a whole one with what follows it, which is a backslash in a path.
  const auto dropHalf = [&](const std::string& next) {
    if (last.empty() || page.holds(last + next)) return;
    result.replace(result.size() - last.size(), last.size(), "_");
  };
  for (std::string piece : characters(composed(text))) {
    if (!isUtf8(piece)) piece = page.decode(piece);
    if (!page.holds(piece) && latin) {
      icu::UnicodeString letters = icu::UnicodeString::fromUTF8(piece);
      latin->transliterate(letters);
      piece.clear();
      letters.toUTF8String(piece);
    }
    if (piece.empty() || !page.holds(piece)) piece = "_";
    dropHalf(piece);
    result += piece;
    last = std::move(piece);
  }
  dropHalf("\\");
  return result;
}

}  // namespace skv
