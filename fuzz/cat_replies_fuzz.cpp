// The CAT server's stream: however it arrives in pieces, it gives the same replies.
#include <cstdint>
#include <initializer_list>

#include "adapters/rigctld/reply_reader.h"
#include "require.h"

namespace {

using velt::ReplyReader;
using velt::RigReply;

struct Outcome {
  std::vector<RigReply> replies;
  bool overflowed = false;
};

// In pieces of 1 to `most` bytes, whose lengths come from the bytes themselves.
Outcome Feed(std::string_view bytes, size_t most) {
  ReplyReader reader;
  Outcome outcome;
  while (!bytes.empty()) {
    const size_t length = std::min(bytes.size(), 1 + static_cast<uint8_t>(bytes[0]) % most);
    for (RigReply& reply : reader.Feed(bytes.substr(0, length))) {
      outcome.replies.push_back(std::move(reply));
    }
    bytes.remove_prefix(length);
  }
  outcome.overflowed = reader.Overflowed();
  return outcome;
}

// Returns the number of replies.
size_t CompareFeeds(std::string_view bytes, std::initializer_list<size_t> pieces) {
  ReplyReader reader;
  const Outcome whole{reader.Feed(bytes), reader.Overflowed()};
  for (const size_t most : pieces) {
    const Outcome split = Feed(bytes, most);
    Require(split.overflowed == whole.overflowed, "too much is too much in pieces as well");
    Require(split.replies.size() == whole.replies.size(), "there are as many replies");
    for (size_t i = 0; i < whole.replies.size(); ++i) {
      Require(split.replies[i].lines == whole.replies[i].lines &&
                  split.replies[i].code == whole.replies[i].code,
              "the replies are the same");
    }
  }
  return whole.replies.size();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  if (CompareFeeds(input, {1, 13, 200}) > 0) return 0;
  // A server that never comes to the end of its reply.
  std::string much;
  while (!input.empty() && much.size() <= ReplyReader::kMostBytes) much += input;
  CompareFeeds(much, {200});
  return 0;
}
