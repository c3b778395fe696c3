// The rig object that is in use, if there is one. Written by the link, read by everything that
// shows or controls the rig.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "ports/omnirig.h"

namespace velt {

class CurrentRig {
 public:
  bool Exists() const { return rig_.has_value(); }
  // It exists and both its server and the rig answer.
  bool Linked() const { return rig_ && rig_->get().Link().state == RigLink::State::Linked; }
  // 1 or 2; 0 without a rig object.
  int32_t Number() const { return number_; }

  // Only while it exists; throws std::bad_optional_access otherwise.
  IRigX& operator*() const { return rig_.value(); }
  IRigX* operator->() const { return &rig_.value().get(); }

  void Take(IRigX& rig, int32_t number) {
    rig_ = rig;
    number_ = number;
  }
  void Drop() {
    rig_.reset();
    number_ = 0;
  }

 private:
  std::optional<std::reference_wrapper<IRigX>> rig_;
  int32_t number_ = 0;
};

}  // namespace velt
