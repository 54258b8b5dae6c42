#include "rcommon/rtext.h"

#include <cstdint>
#include <cwchar>

namespace {

constexpr char32_t replacement = 0xFFFD;

/// Length of a UTF-8 sequence by its first byte; 0 if no sequence starts with it.
int sequenceLength(unsigned char first) {
  if (first < 0x80)
    return 1;
  if (first >= 0xC2 && first < 0xE0)
    return 2;
  if (first >= 0xE0 && first < 0xF0)
    return 3;
  return first >= 0xF0 && first < 0xF5 ? 4 : 0;
}

bool isCodePoint(char32_t code) {
  return code < 0x110000 && (code < 0xD800 || code > 0xDFFF);
}

/// Decodes the code point at `text` and moves on behind it. A broken sequence gives the replacement
/// and is left after its first byte.
char32_t decodeUtf8(const char*& text) {
  static constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
  const auto first = static_cast<unsigned char>(*text++);
  const int length = sequenceLength(first);
  if (length <= 1)
    return length == 1 ? first : replacement;
  char32_t code = first & (0x7F >> length);
  for (int i = 1; i < length; ++i) {
    const auto next = static_cast<unsigned char>(text[i - 1]);
    if ((next & 0xC0) != 0x80)
      return replacement;
    code = code << 6 | (next & 0x3F);
  }
  if (code < smallest[length] || !isCodePoint(code))
    return replacement;
  text += length - 1;
  return code;
}

void appendUtf8(std::string& out, char32_t code) {
  if (code < 0x80) {
    out += static_cast<char>(code);
    return;
  }
  const int length = code < 0x800 ? 2 : code < 0x10000 ? 3 : 4;
  out += static_cast<char>((0xF00 >> length) | (code >> 6 * (length - 1)));
  for (int i = length - 2; i >= 0; --i)
    out += static_cast<char>(0x80 | (code >> 6 * i & 0x3F));
}

} // namespace

// A wide character holds 32 bits on most systems and a UTF-16 unit on Windows; both are handled.
constexpr bool wideIsUtf16 = sizeof(wchar_t) == 2;

std::wstring rtext::twiden(const char* text) {
  std::wstring out;
  while (text && *text) {
    const char32_t code = decodeUtf8(text);
    if (wideIsUtf16 && code >= 0x10000) {
      out += static_cast<wchar_t>(0xD7C0 + (code >> 10));
      out += static_cast<wchar_t>(0xDC00 | (code & 0x3FF));
    } else {
      out += static_cast<wchar_t>(code);
    }
  }
  return out;
}

std::string rtext::narrow(const wchar_t* text) {
  std::string out;
  for (; text && *text; ++text) {
    auto code = static_cast<char32_t>(*text);
    if (wideIsUtf16 && code >= 0xD800 && code < 0xDC00 && (text[1] & 0xFC00) == 0xDC00)
      code = ((code - 0xD7C0) << 10) | (static_cast<char32_t>(*++text) & 0x3FF);
    appendUtf8(out, isCodePoint(code) ? code : replacement);
  }
  return out;
}

int rtext_Text_strcmp(const wchar_t* left, const wchar_t* right) {
  return std::wcscmp(left, right);
}
