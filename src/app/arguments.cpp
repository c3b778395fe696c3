#include "app/arguments.h"

#include <algorithm>
#include <utility>

namespace velt {
namespace {

bool LooksLikeOption(std::string_view text) {
  return text.size() > 1 && text.front() == '-';
}

std::string_view WithoutDashes(std::string_view text) {
  text.remove_prefix(text.starts_with("--") ? 2 : 1);
  return text;
}

}  // namespace

Arguments::Arguments(std::span<const std::string> texts, std::span<const KnownOption> known) {
  for (size_t i = 0; i < texts.size(); ++i) {
    const std::string& text = texts[i];
    const auto option = [&]() -> const KnownOption* {
      if (!LooksLikeOption(text)) return nullptr;
      const std::string_view name = WithoutDashes(text).substr(0, WithoutDashes(text).find('='));
      const auto found = std::ranges::find(known, name, &KnownOption::name);
      return found == known.end() ? nullptr : &*found;
    }();
    if (option == nullptr) {
      others_.push_back(text);
      continue;
    }
    const std::string shown = std::string("--") + option->name;
    const size_t equals = text.find('=');
    std::string& value = values_[option->name];
    if (option->value == nullptr) {
      if (equals != std::string::npos) Complain(shown + " takes no value.");
    } else if (equals != std::string::npos) {
      value = text.substr(equals + 1);
      if (value.empty()) Complain(shown + " needs a value.");
    } else if (i + 1 == texts.size() || texts[i + 1].empty()) {
      Complain(shown + " needs a value.");
      ++i;
    } else if (LooksLikeOption(texts[i + 1])) {
      std::string complaint = shown + " needs a value. One that begins with a dash is given as ";
      complaint.append(shown).append("=").append(option->value).append(".");
      Complain(std::move(complaint));
    } else {
      value = texts[++i];
    }
  }
}

std::string Arguments::Value(std::string_view name) const {
  const auto found = values_.find(name);
  return found == values_.end() ? std::string() : found->second;
}

void Arguments::Complain(std::string text) {
  if (complaint_.empty()) complaint_ = std::move(text);
}

std::string OptionsText(std::span<const KnownOption> known) {
  constexpr size_t kDescriptionColumn = 26;
  std::string all;
  for (const KnownOption& option : known) {
    if (option.description == nullptr) continue;
    std::string line = std::string("  --") + option.name;
    if (option.value != nullptr) line += std::string(" ") + option.value;
    if (line.size() >= kDescriptionColumn - 1) {
      all += line + "\n";
      line.clear();
    }
    line.resize(kDescriptionColumn, ' ');
    all += line + option.description + "\n";
  }
  return all;
}

}  // namespace velt
