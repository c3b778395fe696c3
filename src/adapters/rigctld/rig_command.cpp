#include "adapters/rigctld/rig_command.h"

#include "adapters/rigctld/mode_names.h"

namespace velt {

namespace {

constexpr Milliseconds kTransmitLimit{1000};
constexpr Milliseconds kOtherLimit{2000};

struct KindRow {
  std::string_view echo;
  std::string_view line;  // of reads
};

KindRow RowOf(CommandKind kind) {
  switch (kind) {
    case CommandKind::GetFreq:
      return {"get_freq", "+f\n"};
    case CommandKind::GetMode:
      return {"get_mode", "+m\n"};
    case CommandKind::GetTransmit:
      return {"get_ptt", "+t\n"};
    case CommandKind::GetSplit:
      return {"get_split_vfo", "+s\n"};
    case CommandKind::GetSplitFreq:
      return {"get_split_freq", "+i\n"};
    case CommandKind::GetVfo:
      return {"get_vfo", "+v\n"};
    case CommandKind::GetVfoA:
      return {"get_vfo_info", "+\\get_vfo_info VFOA\n"};
    case CommandKind::GetVfoB:
      return {"get_vfo_info", "+\\get_vfo_info VFOB\n"};
    case CommandKind::GetType:
      return {"dump_caps", "+\\dump_caps\n"};
    case CommandKind::GetPower:
      return {"get_powerstat", "+\\get_powerstat\n"};
    case CommandKind::SetFreq:
      return {"set_freq", {}};
    case CommandKind::SetMode:
      return {"set_mode", {}};
    case CommandKind::SetVfo:
      return {"set_vfo", {}};
    case CommandKind::Key:
    case CommandKind::Release:
      return {"set_ptt", {}};
  }
  return {};
}

}  // namespace

RigCommand ReadCommand(CommandKind kind) {
  return {kind, std::string(RowOf(kind).line)};
}

RigCommand FreqCommand(RigProperty property, int32_t frequencyHz) {
  return {CommandKind::SetFreq, "+F " + std::to_string(frequencyHz) + "\n", property, frequencyHz};
}

RigCommand ModeCommand(int32_t mode) {
  // Without a width the server waits for one and takes the next command for it; -1 keeps the
  // rig's own.
  return {CommandKind::SetMode, "+M " + std::string(ModeName(mode)) + " -1\n", RigProperty::Mode,
          mode};
}

RigCommand VfoCommand(std::string_view name) {
  return {CommandKind::SetVfo, "+V " + std::string(name) + "\n"};
}

RigCommand KeyCommand() {
  return {CommandKind::Key, "+T 1\n", RigProperty::Transmit, 1};
}

RigCommand ReleaseCommand() {
  return {CommandKind::Release, std::string(kReleaseLine), RigProperty::Transmit, 0};
}

std::string_view EchoOf(CommandKind kind) {
  return RowOf(kind).echo;
}

Milliseconds LimitOf(CommandKind kind) {
  const bool transmit =
      kind == CommandKind::GetTransmit || kind == CommandKind::Key || kind == CommandKind::Release;
  return transmit ? kTransmitLimit : kOtherLimit;
}

char VfoLetter(std::string_view name) {
  if (name == "VFOA" || name == "Main" || name == "MainA") return 'A';
  if (name == "VFOB" || name == "Sub" || name == "MainB") return 'B';
  return 0;
}

}  // namespace velt
