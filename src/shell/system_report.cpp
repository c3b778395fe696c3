#include "shell/system_report.h"

#include <string_view>

#include "rig/link_words.h"
#include "text/paths.h"

namespace velt {
namespace {

constexpr size_t kNameWidth = 17;

void AddLine(std::string& text, std::string name, const std::string& fact) {
  if (fact.empty()) return;
  name += ':';
  if (name.size() < kNameWidth) name.append(kNameWidth - name.size(), ' ');
  text += name + fact + "\n";
}

}  // namespace

SystemReport::SystemReport(const Parts& parts, const Ports& ports) : parts_(parts), ports_(ports) {}

std::string SystemReport::Text() const {
  const SessionFacts session = ports_.session.Facts();
  const std::string system = ports_.system.Description();
  const std::string processor = ports_.system.Processor();
  if (session == SessionFacts() && system.empty() && processor.empty()) return "";

  const Installation& where = parts_.installation;
  std::string text;
  AddLine(text, "VELT-SA", where.version.Text());
  AddLine(text, "System", system);
  AddLine(text, "Processor", processor);
  AddLine(text, "Toolkit", session.toolkit);
  AddLine(text, "Windows", session.windowSystem);
  AddLine(text, "Window manager", session.windowManager);
  AddLine(text, "Desktop", session.desktop);
  for (const std::string& screen : session.screens) AddLine(text, "Screen", screen);
  AddLine(text, "Sound server", session.soundServer);
  AddLine(text, "Sound source", parts_.captureForm.lblSource.caption);
  AddLine(text, "CAT rig 1", CatText(1));
  AddLine(text, "CAT rig 2", CatText(2));
  AddLine(text, "PTT", PttText());
  AddLine(text, "Engine", EngineText());
  AddLine(text, "Engine folder", PathFromHome(where.engineFolder));
  AddLine(text, "Program folder", PathFromHome(where.programFolder));
  AddLine(text, "Data folder", PathFromHome(where.dataFolder));
  AddLine(text, "Settings",
          where.settingsFile.empty() ? "kept in memory" : PathFromHome(where.settingsFile));
  return text;
}

std::string SystemReport::CatText(int32_t rigNumber) const {
  const IRigX& rig = rigNumber == 1 ? ports_.server.Rig1() : ports_.server.Rig2();
  const RigLink link = rig.Link();
  std::string text;
  if (ports_.server.Can().addresses) text = ports_.server.Address(rigNumber) + ", ";
  text += ShortLinkText(link, ports_.server.Can().simulated);
  if (link.state != RigLink::State::Off && !rig.RigType().empty()) text += ", " + rig.RigType();
  const std::string cause = CauseText(link.cause);
  if (!cause.empty()) text += " (" + cause + ")";
  if (parts_.currentRig.Number() == rigNumber) text += ", in use";
  return text;
}

std::string SystemReport::PttText() const {
  if (parts_.rig.pttMethod == "COM") return "lines of a serial port";
  if (parts_.rig.pttMethod == "ARDUINO") return "Arduino";
  return "CAT";
}

std::string SystemReport::EngineText() const {
  const Installation& where = parts_.installation;
  return where.enginePresent ? "there, " + where.EngineTitle() : "none";
}

std::string SystemReport::PathFromHome(const std::filesystem::path& path) const {
  constexpr int32_t kHomeFolder = 40;
  const std::filesystem::path home = TextPath(parts_.platform.GetSpecialFolder(kHomeFolder));
  const std::filesystem::path below = path.lexically_relative(home);
  if (home.empty() || below.empty() || *below.begin() == "..") return PathText(path);
  return below == "." ? "~" : PathText("~" / below);
}

}  // namespace velt
