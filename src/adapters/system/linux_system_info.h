// What a Linux system tells about itself. It has no registry and no folder of its own kind.
#pragma once

#include "ports/system_info.h"

namespace velt {

class LinuxSystemInfo : public SystemInfo {
 public:
  // The first two numbers of the kernel's release, with the kernel's name.
  std::optional<SystemVersion> Version() const override;
  // Of the distribution, with kernel and machine.
  std::string Description() const override;
  // The first one's name and how many there are.
  std::string Processor() const override;
  std::string SystemFolder() const override;
  // Only the home folder (40) is known.
  std::string SpecialFolder(int32_t identifier) const override;
  // Media where desktops mount them: the names alone are read, no medium is waited for.
  std::vector<StoragePlace> StoragePlaces() const override;
  std::string RegistryString(RegistryRoot root, const std::string& subkey,
                             const std::string& name) const override;
  std::optional<RegistryValue> RegistryData(RegistryRoot root, const std::string& subkey,
                                            const std::string& name) const override;
  // One of the desktops' tools, whichever is installed.
  std::filesystem::path InformationTool() const override;

  // "6.1.0-18-amd64" gives 6 and 1; empty when the text does not begin with two numbers.
  static std::optional<SystemVersion> VersionIn(const std::string& release);
};

}  // namespace velt
