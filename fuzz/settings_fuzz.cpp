// The settings' file: what can be read at all is written back so that it reads the same, and any
// text can be stored in it.
#include <cstdint>
#include <set>
#include <utility>

#include "adapters/files/ini_text.h"
#include "require.h"

namespace {

using velt::IniText;

std::string_view WithoutBlankEnds(std::string_view text) {
  const size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

// Sections and keys that the file seems to have, found without its parser.
std::set<std::pair<std::string, std::string>> NamesIn(std::string_view bytes) {
  std::set<std::pair<std::string, std::string>> names;
  std::string section;
  while (!bytes.empty()) {
    const size_t end = std::min(bytes.find('\n'), bytes.size() - 1);
    const std::string_view line = WithoutBlankEnds(bytes.substr(0, end));
    bytes.remove_prefix(end + 1);
    if (line.starts_with('[') && line.ends_with(']')) {
      section = WithoutBlankEnds(line.substr(1, line.size() - 2));
    } else if (const size_t sign = line.find('='); sign != std::string_view::npos) {
      names.emplace(section, WithoutBlankEnds(line.substr(0, sign)));
    }
  }
  return names;
}

IniText ReadAgain(const IniText& ini) {
  const auto again = IniText::Parse(ini.Bytes());
  Require(again.has_value(), "what was written can be read");
  Require(again->IsClosed(), "what was written has its closing line");
  Require(again->Bytes() == ini.Bytes(), "what was read is written the same");
  return *again;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  auto ini = IniText::Parse(input);
  if (!ini) ini = IniText();

  const auto names = NamesIn(ini->Bytes());
  const IniText again = ReadAgain(*ini);
  for (const auto& [section, key] : names) {
    Require(again.Get(section, key) == ini->Get(section, key), "every value comes back");
  }

  IniText changed = *ini;
  for (const char* section : {"S", "VELT-SA"}) changed.Set(section, "Key", input);
  // The names are input too, where they can be names.
  const std::string name(input.substr(0, input.find('\n')));
  const bool usable = IniText::IsUsableSection(name) && IniText::IsUsableKey(name);
  if (usable) changed.Set(name, name, input);
  const IniText stored = ReadAgain(changed);
  Require(stored.Get("S", "Key") == input && stored.Get("VELT-SA", "Key") == input,
          "any text can be stored");
  Require(!usable || stored.Get(name, name) == input, "any usable name can be stored");
  for (const auto& [section, key] : names) {
    if (key == "Key" || key == name) continue;
    Require(stored.Get(section, key) == ini->Get(section, key), "what was not set stays");
  }
  return 0;
}
