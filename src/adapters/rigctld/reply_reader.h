// Cuts the server's stream into replies. An extended reply is an echo of the command, lines with
// values, and "RPRT n" as its end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velt {

struct RigReply {
  std::vector<std::string> lines;  // the echo first, without line ends
  int32_t code = 0;                // 0: done; negative: the server's error number

  // The text behind "KEY:" without blanks around it; empty when there is no such line. The echo is
  // not looked at.
  std::string_view Field(std::string_view key) const;

  // The server did not get through to the rig in time.
  bool RigIsSilent() const;
  // It was certainly not done. Other errors happen on the way to the rig and back: it may have
  // understood.
  bool Refused() const;
};

class ReplyReader {
 public:
  // More than this without the end of a reply is no server of ours.
  static constexpr size_t kMostBytes = size_t{64} * 1024;

  // Takes what has arrived, split anywhere, and gives the replies that are complete now.
  std::vector<RigReply> Feed(std::string_view bytes);

  // True once too much came without the end of a reply; nothing is taken any more until Reset().
  bool Overflowed() const { return overflowed_; }
  void Reset();

 private:
  std::string line_;
  std::vector<std::string> lines_;
  size_t size_ = 0;  // bytes kept
  bool overflowed_ = false;
};

}  // namespace velt
