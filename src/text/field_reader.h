// Reads the free-format texts that programs leave for each other: lines, and fields that end at a
// comma or at the line's end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velt {

class FieldReader {
 public:
  // What stands behind the last line end: all of it, or perhaps only the beginning, because
  // somebody may be writing at this moment. Then it counts as missing.
  enum class Tail { Whole, MayGoOn };

  // The text has to outlive the reader. Lines end with LF, CR LF or CR.
  explicit FieldReader(std::string_view text, Tail tail = Tail::Whole);

  // The rest of the present line. Empty when the text is at its end.
  std::optional<std::string> Line();

  // The next field without the blanks around it; one in double quotes without them, and then commas
  // and line ends belong to it. Nothing at the end of the text or when a closing quote is missing.
  std::optional<std::string> Text();

  // The next field as a number; 0 when the field is empty, nothing when it is no number.
  std::optional<double> Number();
  // Rounded, halves to even; nothing when it does not fit.
  std::optional<int32_t> Number32();
  std::optional<int16_t> Number16();

 private:
  void SkipSeparator();

  std::string_view rest_;
};

}  // namespace velt
