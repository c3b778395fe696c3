// The per-user settings store: texts by section and key.
#pragma once

#include <optional>
#include <string>

namespace velt {

class SettingsStore {
 public:
  virtual ~SettingsStore() = default;

  // Empty when the key or its section is missing.
  virtual std::optional<std::string> Get(const std::string& section,
                                         const std::string& key) const = 0;

  // Remembers the text; it reaches the disk with Commit.
  virtual void Save(const std::string& section, const std::string& key,
                    const std::string& text) = 0;

  // Writes what was saved. Returns the system's error number, 0 for success; on an error the
  // stored file is as it was.
  virtual int Commit() = 0;

  // Deletes everything stored, every section and the backup too; what was stored may be kept once
  // where no start looks for it. Returns the error number.
  virtual int DeleteAll() = 0;
};

}  // namespace velt
