// What the operating system tells about itself.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace velt {

struct SystemVersion {
  int32_t major = 0;
  int32_t minor = 0;
  std::string name;  // the system's own name; empty on Windows, whose names follow its versions
};

enum class RegistryRoot : uint32_t { ClassesRoot = 0x80000000U, LocalMachine = 0x80000002U };

// One value of the system's registry, as it is kept.
struct RegistryValue {
  static constexpr uint32_t kText = 1;
  static constexpr uint32_t kNumber = 4;  // of 32 bits, its low byte first
  uint32_t type = kText;
  std::string bytes;
};

// Where files may be besides the user's own folder.
struct StoragePlace {
  std::string name;  // for people
  std::filesystem::path folder;
};

class SystemInfo {
 public:
  virtual ~SystemInfo() = default;

  // Empty when the system does not tell.
  virtual std::optional<SystemVersion> Version() const = 0;

  // The system with its version as people call it, and the processors; empty when unknown.
  virtual std::string Description() const = 0;
  virtual std::string Processor() const = 0;

  // The operating system's own folder, in UTF-8; empty when there is none.
  virtual std::string SystemFolder() const = 0;

  // The folder for a shell folder identifier (40: the user's home); empty when unknown.
  virtual std::string SpecialFolder(int32_t identifier) const = 0;

  // The file system's root, and the sticks, cards and disks that the user has plugged in now.
  virtual std::vector<StoragePlace> StoragePlaces() const = 0;

  // A plain string value of the system's registry; empty when there is no registry, no such key
  // or value, or one of another type.
  virtual std::string RegistryString(RegistryRoot root, const std::string& subkey,
                                     const std::string& name) const = 0;

  // A value of any type; empty when there is no registry, no such key or no such value.
  virtual std::optional<RegistryValue> RegistryData(RegistryRoot root, const std::string& subkey,
                                                    const std::string& name) const = 0;

  // The system's own program that tells what the computer is made of; empty when none is known.
  virtual std::filesystem::path InformationTool() const = 0;
};

}  // namespace velt
