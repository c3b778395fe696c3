// The text of a settings file: sections of key=value lines, and a closing line that tells a whole
// file from one that lost its end. Everything that is not set stays as it was found, in its order:
// comments (";" or "#"), blank lines, other sections and keys.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velt {

class IniText {
 public:
  // Empty when the bytes are not a whole settings file: no bytes at all, control characters, a
  // last line without its end, a key before any section, or a line that is none of blank, comment,
  // "[section]" and key=value. Line ends may be LF or CR LF; the closing line needs none.
  static std::optional<IniText> Parse(std::string_view bytes);

  // Whether the closing line was there. Older files have none. What somebody appended behind it
  // counts like the rest.
  bool IsClosed() const { return closed_; }

  // The text of a key, exactly as it was set; of repeated keys the first. Spelling counts.
  std::optional<std::string> Get(std::string_view section, std::string_view key) const;

  // Changes the line of that key, or adds it at the end of its section. Any text can be set; one
  // that a plain line cannot hold (blanks at its ends, control characters, a leading quote) is
  // written in quotes with \" \\ \n \r and \xHH. The names have to be usable.
  void Set(std::string_view section, std::string_view key, std::string_view text);

  // With the closing line, as the last one.
  std::string Bytes() const;

  // Whether names can stand in the file: not empty, no control characters, no blanks at the ends;
  // keys without "=" and not starting with ";", "#" or "[".
  static bool IsUsableSection(std::string_view name);
  static bool IsUsableKey(std::string_view name);

 private:
  struct Line {
    std::string key;    // empty for blank lines and comments
    std::string text;   // the value, decoded
    std::string bytes;  // as it stands in the file, without its end
  };
  struct Section {
    std::string name;
    std::string header;  // its line in the file; empty for what precedes the first section
    std::vector<Line> lines;
  };

  const Line* Find(std::string_view section, std::string_view key) const;

  std::vector<Section> sections_{Section{}};
  std::string lineEnd_ = "\n";
  bool closed_ = false;
};

}  // namespace velt
