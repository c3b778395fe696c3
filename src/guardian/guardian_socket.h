// One end of the socket pair between the program and its guardian. Nothing here waits or raises a
// signal.
#pragma once

#include <optional>

#include "guardian/descriptor.h"
#include "guardian/guardian_message.h"

namespace velt {

class GuardianSocket {
 public:
  static constexpr int kGuardiansNumber = 3;  // of the descriptor, in the guardian

  GuardianSocket() = default;
  explicit GuardianSocket(Descriptor descriptor) : descriptor_(std::move(descriptor)) {}

  // Whether the descriptor is such a socket.
  static bool IsOne(int descriptor);

  // Full: the other side has not read for a while. Gone: there is none. Unfit: the message is too
  // long, or its descriptor none.
  enum class Sent { Yes, Full, Gone, Unfit };
  // A device's descriptor in the recipe goes along.
  Sent Send(const GuardianMessage& message) const;

  struct Received {
    enum class What { Message, Damaged, Nothing, End } what = What::Nothing;
    GuardianMessage message;
    Descriptor device;  // that came along; closed on exec
  };
  // The next one, if there is one. Nothing: none has arrived yet. Damaged ones are taken out.
  Received Receive() const;

  int Number() const { return descriptor_.Number(); }
  bool IsOpen() const { return descriptor_.IsOpen(); }
  void Close() { descriptor_.Close(); }

 private:
  Descriptor descriptor_;
};

}  // namespace velt
