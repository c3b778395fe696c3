// A command line taken apart by a table of options. Nothing is converted: names of files keep their
// bytes.
#pragma once

#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velt {

struct KnownOption {
  const char* name;         // without dashes
  const char* value;        // what stands for the value in the usage; null: a switch
  const char* description;  // null: not for the usage
};

// An option begins with one dash or two. Its value follows it, or stands behind "=" in the same
// argument, which a value that begins with a dash has to. The last of equal options counts.
class Arguments {
 public:
  // `texts` without the program's name.
  Arguments(std::span<const std::string> texts, std::span<const KnownOption> known);

  bool Has(std::string_view name) const { return values_.contains(name); }
  std::string Value(std::string_view name) const;  // empty when absent

  // What is neither a known option nor its value, as it was typed.
  const std::vector<std::string>& Others() const { return others_; }

  // The first value that is missing or too many, as a sentence; empty when there is none.
  const std::string& Complaint() const { return complaint_; }

 private:
  void Complain(std::string text);

  std::map<std::string, std::string, std::less<>> values_;
  std::vector<std::string> others_;
  std::string complaint_;
};

// The options with their descriptions, a line or more for each.
std::string OptionsText(std::span<const KnownOption> known);

}  // namespace velt
