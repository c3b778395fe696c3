#include "adapters/files/ini_text.h"

#include <algorithm>

namespace velt {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kHexDigits = "0123456789abcdef";
// A comment to whoever does not know it.
constexpr std::string_view kClosingLine = "; end of the settings";

bool IsBlank(char c) {
  return c == ' ' || c == '\t';
}

bool IsControl(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return (byte < 0x20 && c != '\t') || byte == 0x7F;
}

bool StartsComment(char c) {
  return c == ';' || c == '#';
}

bool HasBlankEnds(std::string_view text) {
  return !text.empty() && (IsBlank(text.front()) || IsBlank(text.back()));
}

std::string_view WithoutBlankEnds(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

bool IsUsableName(std::string_view name) {
  return !name.empty() && !HasBlankEnds(name) && std::none_of(name.begin(), name.end(), IsControl);
}

std::string Encoded(std::string_view text) {
  const bool plain = !HasBlankEnds(text) && !text.starts_with('"') &&
                     std::none_of(text.begin(), text.end(), IsControl);
  if (plain) return std::string(text);
  std::string out = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') {
      out += '\\';
      out += c;
    } else if (c == '\n') {
      out += "\\n";
    } else if (c == '\r') {
      out += "\\r";
    } else if (IsControl(c)) {
      const auto byte = static_cast<unsigned char>(c);
      out += "\\x";
      out += kHexDigits[byte >> 4U];
      out += kHexDigits[byte & 15U];
    } else {
      out += c;
    }
  }
  return out + '"';
}

// The text inside a value in quotes; empty when the value is not wholly of that form. A value that
// somebody typed with quotes of his own is then taken as it stands.
std::optional<std::string> Unquoted(std::string_view value) {
  if (value.size() < 2 || value.front() != '"' || value.back() != '"') return std::nullopt;
  std::string_view rest = value.substr(1, value.size() - 2);
  std::string out;
  while (!rest.empty()) {
    const char c = rest.front();
    rest.remove_prefix(1);
    if (c == '"') return std::nullopt;
    if (c != '\\') {
      out += c;
      continue;
    }
    if (rest.empty()) return std::nullopt;
    const char code = rest.front();
    rest.remove_prefix(1);
    if (code == '"' || code == '\\') {
      out += code;
    } else if (code == 'n') {
      out += '\n';
    } else if (code == 'r') {
      out += '\r';
    } else if (code == 'x' && rest.size() >= 2) {
      const size_t high = kHexDigits.find(rest[0]);
      const size_t low = kHexDigits.find(rest[1]);
      if (high == std::string_view::npos || low == std::string_view::npos) return std::nullopt;
      out += static_cast<char>(high * 16 + low);
      rest.remove_prefix(2);
    } else {
      return std::nullopt;
    }
  }
  return out;
}

}  // namespace

bool IniText::IsUsableSection(std::string_view name) {
  return IsUsableName(name);
}

bool IniText::IsUsableKey(std::string_view name) {
  return IsUsableName(name) && name.find('=') == std::string_view::npos &&
         !StartsComment(name.front()) && name.front() != '[';
}

std::optional<IniText> IniText::Parse(std::string_view bytes) {
  // Some editors take away the end of the last line.
  const std::string_view lastLine = bytes.substr(bytes.rfind('\n') + 1);
  if (!lastLine.empty() ? lastLine != kClosingLine : bytes.empty()) return std::nullopt;
  // Editors of other systems put the mark in front; it says nothing here.
  if (bytes.starts_with(kByteOrderMark)) bytes.remove_prefix(kByteOrderMark.size());
  IniText ini;
  if (bytes.substr(0, bytes.find('\n')).ends_with('\r')) ini.lineEnd_ = "\r\n";
  while (!bytes.empty()) {
    const size_t end = bytes.find('\n');
    std::string_view line = bytes.substr(0, end);
    bytes.remove_prefix(std::min(end, bytes.size() - 1) + 1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (std::any_of(line.begin(), line.end(), IsControl)) return std::nullopt;

    const std::string_view content = WithoutBlankEnds(line);
    if (content == kClosingLine) {
      ini.closed_ = true;
    } else if (content.empty() || StartsComment(content.front())) {
      ini.sections_.back().lines.push_back({.key = "", .text = "", .bytes = std::string(line)});
    } else if (content.front() == '[') {
      if (content.back() != ']') return std::nullopt;
      const std::string_view name = WithoutBlankEnds(content.substr(1, content.size() - 2));
      ini.sections_.push_back(
          {.name = std::string(name), .header = std::string(line), .lines = {}});
    } else {
      const size_t sign = content.find('=');
      if (sign == 0 || sign == std::string_view::npos || ini.sections_.size() == 1) {
        return std::nullopt;
      }
      const std::string_view value = WithoutBlankEnds(content.substr(sign + 1));
      ini.sections_.back().lines.push_back(
          {.key = std::string(WithoutBlankEnds(content.substr(0, sign))),
           .text = Unquoted(value).value_or(std::string(value)),
           .bytes = std::string(line)});
    }
  }
  return ini;
}

const IniText::Line* IniText::Find(std::string_view section, std::string_view key) const {
  for (const Section& s : sections_) {
    if (s.header.empty() || s.name != section) continue;
    for (const Line& line : s.lines) {
      if (!line.key.empty() && line.key == key) return &line;
    }
  }
  return nullptr;
}

std::optional<std::string> IniText::Get(std::string_view section, std::string_view key) const {
  const Line* line = Find(section, key);
  return line == nullptr ? std::nullopt : std::optional(line->text);
}

void IniText::Set(std::string_view section, std::string_view key, std::string_view text) {
  Line wanted{.key = std::string(key),
              .text = std::string(text),
              .bytes = std::string(key) + '=' + Encoded(text)};
  for (Section& s : sections_) {
    if (s.header.empty() || s.name != section) continue;
    for (Line& line : s.lines) {
      if (line.key != key) continue;
      if (line.text != text) line = std::move(wanted);
      return;
    }
  }
  auto place = std::find_if(sections_.begin(), sections_.end(), [&](const Section& s) {
    return !s.header.empty() && s.name == section;
  });
  if (place == sections_.end()) {
    std::vector<Line>& before = sections_.back().lines;
    const bool atTop = sections_.size() == 1 && before.empty();
    if (!atTop && (before.empty() || !before.back().bytes.empty())) before.emplace_back();
    sections_.push_back(
        {.name = std::string(section), .header = '[' + std::string(section) + ']', .lines = {}});
    place = std::prev(sections_.end());
  }
  // Before the blank lines that part the section from the next one.
  std::vector<Line>& lines = place->lines;
  auto end = lines.end();
  while (end != lines.begin() && WithoutBlankEnds(std::prev(end)->bytes).empty()) --end;
  lines.insert(end, std::move(wanted));
}

std::string IniText::Bytes() const {
  std::string out;
  for (const Section& s : sections_) {
    if (!s.header.empty()) out += s.header + lineEnd_;
    for (const Line& line : s.lines) out += line.bytes + lineEnd_;
  }
  out += kClosingLine;
  return out + lineEnd_;
}

}  // namespace velt
