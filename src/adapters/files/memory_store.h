// A settings store that forgets everything at the end, for runs that must leave the user's settings
// alone.
#pragma once

#include <map>
#include <utility>

#include "ports/settings_store.h"

namespace velt {

class MemoryStore : public SettingsStore {
 public:
  std::optional<std::string> Get(const std::string& section,
                                 const std::string& key) const override {
    const auto found = texts_.find({section, key});
    return found == texts_.end() ? std::nullopt : std::optional(found->second);
  }
  void Save(const std::string& section, const std::string& key, const std::string& text) override {
    texts_[{section, key}] = text;
  }
  int Commit() override { return 0; }
  int DeleteAll() override {
    texts_.clear();
    return 0;
  }

 private:
  std::map<std::pair<std::string, std::string>, std::string> texts_;
};

}  // namespace velt
