// What the program and its guardian say to each other, as bytes. Each message is one packet.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "ports/guardian.h"

namespace velt {

struct GuardianMessage {
  enum class Kind : uint8_t {
    // To the guardian.
    Hold = 1,  // ticket and recipe; a device's descriptor travels beside the bytes
    Forget,    // ticket
    Follow,    // ticket
    Beat,
    LogFile,  // text: absolute path; empty: none
    // From the guardian.
    Here,               // first of all, and in answer to each beat
    ReleasedInSilence,  // every ticket up to this one that was held
    FollowUpDone,       // ticket
    FollowUpFailed,     // ticket
  };
  static constexpr size_t kMostBytes = 6144;  // of a packet

  Kind kind = Kind::Beat;
  uint32_t ticket = 0;
  ReleaseRecipe recipe;  // its descriptor is not among the bytes
  std::string text;
};

// Empty when it would be longer than kMostBytes.
std::string Encode(const GuardianMessage& message);

// Empty when the bytes are no such message, whole and with nothing after it.
std::optional<GuardianMessage> Decode(std::string_view bytes);

}  // namespace velt
