#include "guardian/guardian_message.h"

namespace velt {
namespace {

using Kind = GuardianMessage::Kind;

constexpr unsigned kByte = 8;

// Low byte first; texts have their length in two bytes before them.
class Writer {
 public:
  void Number(uint32_t value, size_t bytes) {
    for (size_t i = 0; i < bytes; ++i) {
      packet_ += static_cast<char>(static_cast<unsigned char>(value >> (kByte * i)));
    }
  }
  void Text(const std::string& text) {
    fits_ = fits_ && text.size() <= GuardianMessage::kMostBytes;
    if (!fits_) return;
    Number(static_cast<uint32_t>(text.size()), 2);
    packet_ += text;
  }
  std::string Packet() const {
    return fits_ && packet_.size() <= GuardianMessage::kMostBytes ? packet_ : std::string();
  }

 private:
  std::string packet_;
  bool fits_ = true;
};

class Reader {
 public:
  explicit Reader(std::string_view bytes) : left_(bytes) {}

  uint32_t Number(size_t bytes) {
    uint32_t value = 0;
    const std::string_view taken = Take(bytes);
    for (size_t i = 0; i < taken.size(); ++i) {
      value |= uint32_t{static_cast<unsigned char>(taken[i])} << (kByte * i);
    }
    return value;
  }
  std::string Text() { return std::string(Take(Number(2))); }
  bool ReadAll() const { return good_ && left_.empty(); }

 private:
  std::string_view Take(size_t count) {
    good_ = good_ && count <= left_.size();
    if (!good_) return {};
    const std::string_view taken = left_.substr(0, count);
    left_.remove_prefix(count);
    return taken;
  }

  std::string_view left_;
  bool good_ = true;
};

}  // namespace

std::string Encode(const GuardianMessage& message) {
  Writer writer;
  writer.Number(static_cast<uint8_t>(message.kind), 1);
  writer.Number(message.ticket, 4);
  if (message.kind == Kind::LogFile) writer.Text(message.text);
  if (message.kind == Kind::Hold) {
    const ReleaseRecipe& recipe = message.recipe;
    writer.Number(recipe.port, 2);
    writer.Number(recipe.lowersLines ? 1 : 0, 1);
    for (const std::string& text : {recipe.host, recipe.release, recipe.ask, recipe.answerEnd,
                                    recipe.accepted, recipe.tells, recipe.receives}) {
      writer.Text(text);
    }
  }
  return writer.Packet();
}

std::optional<GuardianMessage> Decode(std::string_view bytes) {
  Reader reader(bytes);
  const uint32_t kind = reader.Number(1);
  if (kind < static_cast<uint32_t>(Kind::Hold) ||
      kind > static_cast<uint32_t>(Kind::FollowUpFailed)) {
    return std::nullopt;
  }
  GuardianMessage message;
  message.kind = static_cast<Kind>(kind);
  message.ticket = reader.Number(4);
  if (message.kind == Kind::LogFile) message.text = reader.Text();
  if (message.kind == Kind::Hold) {
    ReleaseRecipe& recipe = message.recipe;
    recipe.port = static_cast<uint16_t>(reader.Number(2));
    recipe.lowersLines = reader.Number(1) != 0;
    for (std::string* text : {&recipe.host, &recipe.release, &recipe.ask, &recipe.answerEnd,
                              &recipe.accepted, &recipe.tells, &recipe.receives}) {
      *text = reader.Text();
    }
  }
  if (!reader.ReadAll()) return std::nullopt;
  return message;
}

}  // namespace velt
