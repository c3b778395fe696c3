#include "presets/preset_csv.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "presets/preset_text.h"
#include "text/formats.h"
#include "text/numbers.h"

namespace velt {
namespace {

enum Field : size_t { kBand, kTitle, kPreset, kKilohertz, kMode, kFieldCount };
using Row = std::array<std::string, kFieldCount>;

constexpr std::array<const char*, kFieldCount> kNames{"band", "band title", "preset",
                                                      "frequency kHz", "mode"};
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

bool IsControl(char c) {
  return static_cast<unsigned char>(c) < ' ' && c != '\t';
}

// Short enough and fit for one line of a message.
std::string Quoted(std::string_view text) {
  constexpr size_t kMost = 40;
  std::string shown(text.substr(0, kMost));
  std::ranges::replace_if(shown, IsControl, '?');
  return "\"" + shown + (text.size() > kMost ? "...\"" : "\"");
}

// Takes the text apart; remembers the first mistake and gives no row any more.
class CsvReader {
 public:
  explicit CsvReader(std::string_view text) : rest_(text) {
    if (rest_.starts_with(kByteOrderMark)) rest_.remove_prefix(kByteOrderMark.size());
  }

  // The next row that is not empty.
  std::optional<Row> Next() {
    while (SkipLineEnd()) {
    }
    if (rest_.empty() || !mistake_.empty()) return std::nullopt;
    line_ = nextLine_;
    Row row;
    for (size_t field = 0; field < kFieldCount; ++field) {
      if (field > 0 && !Skip(',')) Complain(field, "is missing");
      row[field] = rest_.starts_with('"') ? QuotedField(field) : PlainField(field);
      if (row[field].size() > kLongestPresetLine) Complain(field, "is too long");
      if (std::ranges::any_of(row[field], IsControl)) Complain(field, "has a control character");
      if (!mistake_.empty()) return std::nullopt;
    }
    if (!rest_.empty() && !SkipLineEnd()) Complain(kMode, "has another field behind it");
    return mistake_.empty() ? std::optional(std::move(row)) : std::nullopt;
  }

  void Complain(size_t field, const std::string& what) {
    if (!mistake_.empty()) return;
    mistake_ = "line " + std::to_string(line_) + ", " + kNames[field] + ": " + what;
  }
  void ComplainOfEnd(const std::string& what) {
    if (mistake_.empty()) mistake_ = "line " + std::to_string(nextLine_) + ": " + what;
  }
  const std::string& Mistake() const { return mistake_; }

 private:
  bool Skip(char wanted) {
    if (!rest_.starts_with(wanted)) return false;
    rest_.remove_prefix(1);
    return true;
  }
  bool SkipLineEnd() {
    if (!rest_.starts_with('\r') && !rest_.starts_with('\n')) return false;
    rest_.remove_prefix(rest_.starts_with("\r\n") ? 2 : 1);
    ++nextLine_;
    return true;
  }
  std::string PlainField(size_t field) {
    const std::string_view found = rest_.substr(0, rest_.find_first_of(",\r\n"));
    rest_.remove_prefix(found.size());
    if (found.find('"') != std::string_view::npos) Complain(field, "has a quote in it");
    return std::string(found);
  }
  // Two quotes in it are one.
  std::string QuotedField(size_t field) {
    std::string found;
    while (Skip('"')) {
      const size_t end = rest_.find('"');
      if (end == std::string_view::npos) {
        Complain(field, "has no closing quote");
        return found;
      }
      found += rest_.substr(0, end);
      rest_.remove_prefix(end + 1);
      if (rest_.starts_with('"')) found += '"';
    }
    if (!rest_.empty() && rest_.find_first_of(",\r\n") != 0) {
      Complain(field, "has text behind its closing quote");
    }
    return found;
  }

  std::string_view rest_;
  size_t line_ = 1;
  size_t nextLine_ = 1;
  std::string mistake_;
};

// A text that does not begin with a number never tunes, like the program's own "P2". What does has
// to be meant: all of it a number, and one that a preset can tune to.
std::string WrongKilohertz(const std::string& text) {
  if (LeadingNumber(text) == 0.0) return "";
  constexpr double kLeast = 10.0;
  constexpr double kMost = 2'000'000.0;
  const auto kilohertz = ParseNumber(text);
  if (!kilohertz) return Quoted(text) + " is no number of kHz";
  if (*kilohertz <= kLeast || *kilohertz > kMost) {
    return Quoted(text) + " is not above 10 kHz and at most 2000000 kHz";
  }
  return "";
}

std::optional<int32_t> IndexIn(const Row& row, Field field, int32_t count, CsvReader& reader) {
  const auto index = ParseWhole(row[field]);
  if (index && *index >= 0 && *index < count) return index;
  reader.Complain(field,
                  Quoted(row[field]) + " is no number from 0 to " + std::to_string(count - 1));
  return std::nullopt;
}

std::string CsvField(const std::string& cell) {
  const std::string text = Without(Without(cell, '\r'), '\n');
  if (text.find_first_of(",\"") == std::string::npos) return text;
  std::string quoted = "\"";
  for (const char c : text) quoted += c == '"' ? "\"\"" : std::string(1, c);
  return quoted + "\"";
}

std::string CsvLine(const Row& row) {
  std::string line;
  for (const std::string& field : row) line += (line.empty() ? "" : ",") + CsvField(field);
  return line + "\r\n";
}

Row HeaderRow() {
  Row row;
  std::ranges::copy(kNames, row.begin());
  return row;
}

// Which presets have come; fills the table row by row.
class Filler {
 public:
  Filler(CsvReader& reader, PresetTable& table) : reader_(reader), table_(table) {}

  void Take(const Row& row) {
    const auto band = IndexIn(row, kBand, PresetTable::kBands, reader_);
    if (!band) return;
    std::string& title = table_.Cell(*band, PresetTable::kTitle);
    auto& titled = titled_[static_cast<size_t>(*band)];
    if (titled && title != row[kTitle]) {
      return reader_.Complain(
          kTitle, Quoted(row[kTitle]) + " is not " + Quoted(title) + " as before for this band");
    }
    const auto preset = IndexIn(row, kPreset, PresetTable::kPresets, reader_);
    if (!preset) return;
    auto& seen = seen_[static_cast<size_t>(*band * PresetTable::kPresets + *preset)];
    if (seen) return reader_.Complain(kPreset, "this band has had its preset " + row[kPreset]);
    if (const std::string wrong = WrongKilohertz(row[kKilohertz]); !wrong.empty()) {
      return reader_.Complain(kKilohertz, wrong);
    }
    if (ParseNumber(row[kMode])) {
      return reader_.Complain(kMode, Quoted(row[kMode]) + " is a number");
    }
    titled = seen = true;
    title = row[kTitle];
    table_.Cell(*band, PresetTable::kFirstFrequency + *preset) = row[kKilohertz];
    table_.Cell(*band, PresetTable::kFirstMode + *preset) = row[kMode];
  }

  void CheckAllCame() {
    const auto missing = std::ranges::find(seen_, false);
    if (missing == seen_.end()) return;
    const auto number = static_cast<int32_t>(missing - seen_.begin());
    reader_.ComplainOfEnd("there was no row for band " +
                          std::to_string(number / PresetTable::kPresets) + ", preset " +
                          std::to_string(number % PresetTable::kPresets));
  }

 private:
  CsvReader& reader_;
  PresetTable& table_;
  std::array<bool, PresetTable::kBands> titled_{};
  std::array<bool, static_cast<size_t>(PresetTable::kBands* PresetTable::kPresets)> seen_{};
};

}  // namespace

std::string PresetCsv(const PresetTable& table) {
  std::string text = CsvLine(HeaderRow());
  for (int32_t band = 0; band < PresetTable::kBands; ++band) {
    for (int32_t preset = 0; preset < PresetTable::kPresets; ++preset) {
      text +=
          CsvLine({std::to_string(band), table.Cell(band, PresetTable::kTitle),
                   std::to_string(preset), table.Cell(band, PresetTable::kFirstFrequency + preset),
                   table.Cell(band, PresetTable::kFirstMode + preset)});
    }
  }
  return text;
}

std::string ReadPresetCsv(std::string_view text, PresetTable& table) {
  CsvReader reader(text);
  PresetTable read = table;
  const auto header = reader.Next();
  if (!header || *header != HeaderRow()) {
    std::string wanted = CsvLine(HeaderRow());
    wanted.resize(wanted.size() - 2);
    return "line 1: the header has to be " + wanted;
  }
  Filler filler(reader, read);
  while (const auto row = reader.Next()) filler.Take(*row);
  filler.CheckAllCame();
  if (reader.Mistake().empty()) table = read;
  return reader.Mistake();
}

}  // namespace velt
