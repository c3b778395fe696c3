// One command to the server, ready to be sent, and what its kind implies.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "ports/scheduler.h"

namespace velt {

enum class CommandKind {
  GetFreq,
  GetMode,
  GetTransmit,
  GetSplit,
  GetSplitFreq,
  GetVfo,
  GetVfoA,
  GetVfoB,
  GetType,
  GetPower,
  SetFreq,
  SetMode,
  SetVfo,
  Key,
  Release,
};

// What a write is about.
enum class RigProperty { None, Freq, FreqA, FreqB, Mode, Transmit };

// The release, also for those paths that have no time to build it.
inline constexpr std::string_view kReleaseLine = "+T 0\n";

struct RigCommand {
  CommandKind kind = CommandKind::GetFreq;
  std::string line;  // with its line end
  RigProperty property = RigProperty::None;
  int32_t value = 0;  // what is written to the property
};

RigCommand ReadCommand(CommandKind kind);  // one of Get...
RigCommand FreqCommand(RigProperty property, int32_t frequencyHz);
RigCommand ModeCommand(int32_t mode);
RigCommand VfoCommand(std::string_view name);
RigCommand KeyCommand();
RigCommand ReleaseCommand();

// The first word of the reply's echo; any other means that the stream is out of step.
std::string_view EchoOf(CommandKind kind);

// How long the reply may take.
Milliseconds LimitOf(CommandKind kind);

// 'A' or 'B' for the server's names of the two VFOs, 0 for any other name.
char VfoLetter(std::string_view name);

}  // namespace velt
