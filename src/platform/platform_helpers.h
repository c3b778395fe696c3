// Small services of the operating system, each with a stated fallback where there is none.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "form/main_form.h"
#include "platform/installation.h"
#include "ports/clock.h"
#include "ports/files.h"
#include "ports/launcher.h"
#include "ports/system_info.h"

namespace velt {

class PlatformHelpers {
 public:
  struct Ports {
    const SystemInfo& system;
    const Files& files;
    Launcher& launcher;
    const Clock& clock;
  };
  PlatformHelpers(WindowFrame& window, Ports ports);

  // Finds the operating system's description ("5.1  Windows XP"; "Err detecting windows" when it
  // does not tell) and its folder (with a separator at its end).
  void GetWindowsVersion();
  const std::string& SystemDescription() const { return systemDescription_; }
  const std::string& SystemFolder() const { return systemFolder_; }

  // Today as "yy-mm-dd".
  std::string DateStamp() const;

  // True for files only, never for folders or an empty path.
  bool FileExists(const std::filesystem::path& path) const;

  // 0: normal band; else above all other windows.
  void KeepOnTop(int16_t flag);

  void SendMailToAuthor(const ProgramVersion& version);

  // Opens the address; an empty one is first replaced by the author's page.
  void OpenURL(std::string& url);

  // Moves the window to the middle of a screen of that size (twips).
  static void CenterForm(WindowFrame& window, int32_t screenWidthTwips, int32_t screenHeightTwips);

  // The folder's path up to the first NUL; empty when unknown.
  std::string GetSpecialFolder(int32_t identifier) const;

  // A plain string value of the registry; empty on any failure.
  std::string GetRegistryString(RegistryRoot root, const std::string& subkey,
                                const std::string& name) const;

  // Reads one value of the registry as text, a number of 32 bits as a decimal one. False and an
  // empty text when there is no such value or it has more than 1024 bytes.
  bool GetKeyValue(RegistryRoot root, const std::string& keyName, const std::string& valueName,
                   std::string& value) const;

 private:
  WindowFrame& window_;
  Ports ports_;
  std::string systemDescription_;
  std::string systemFolder_;
};

// The name that belongs to a Windows version text "major.minor".
std::string WindowsName(const std::string& versionText);

}  // namespace velt
