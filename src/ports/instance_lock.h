// One running program for each user.
#pragma once

namespace velt {

class InstanceLock {
 public:
  virtual ~InstanceLock() = default;
  // True when this program is the only one now (or cannot know); it stays so until it ends.
  virtual bool TryHold() = 0;
};

}  // namespace velt
