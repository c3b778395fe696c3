#include "text/field_reader.h"

#include <algorithm>

#include "text/numbers.h"

namespace velt {
namespace {

constexpr std::string_view kLineEnds = "\r\n";
constexpr std::string_view kSeparators = ",\r\n";
constexpr std::string_view kBlanks = " \t";

}  // namespace

FieldReader::FieldReader(std::string_view text, Tail tail) : rest_(text) {
  if (tail == Tail::Whole) return;
  const size_t end = rest_.find_last_of(kLineEnds);
  rest_ = rest_.substr(0, end == std::string_view::npos ? 0 : end + 1);
}

std::optional<std::string> FieldReader::Line() {
  if (rest_.empty()) return std::nullopt;
  const std::string_view line = rest_.substr(0, rest_.find_first_of(kLineEnds));
  rest_.remove_prefix(line.size());
  SkipSeparator();
  return std::string(line);
}

std::optional<std::string> FieldReader::Text() {
  if (rest_.empty()) return std::nullopt;
  const size_t begin = rest_.find_first_not_of(kBlanks);
  if (begin != std::string_view::npos && rest_[begin] == '"') {
    rest_.remove_prefix(begin + 1);
    const size_t close = rest_.find('"');
    if (close == std::string_view::npos) {
      rest_ = {};
      return std::nullopt;
    }
    const std::string_view quoted = rest_.substr(0, close);
    rest_.remove_prefix(close + 1);
    rest_.remove_prefix(std::min(rest_.find_first_of(kSeparators), rest_.size()));
    SkipSeparator();
    return std::string(quoted);
  }
  const std::string_view field = rest_.substr(0, rest_.find_first_of(kSeparators));
  rest_.remove_prefix(field.size());
  SkipSeparator();
  return std::string(Trimmed(field));
}

std::optional<double> FieldReader::Number() {
  const std::optional<std::string> field = Text();
  if (!field) return std::nullopt;
  return field->empty() ? 0.0 : ParseNumber(*field);
}

std::optional<int32_t> FieldReader::Number32() {
  const std::optional<double> number = Number();
  return number ? RoundHalfEven(*number) : std::nullopt;
}

std::optional<int16_t> FieldReader::Number16() {
  const std::optional<double> number = Number();
  return number ? RoundHalfEven16(*number) : std::nullopt;
}

void FieldReader::SkipSeparator() {
  if (rest_.empty()) return;
  rest_.remove_prefix(rest_.starts_with("\r\n") ? 2 : 1);
}

}  // namespace velt
