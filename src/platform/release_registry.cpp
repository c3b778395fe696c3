#include "platform/release_registry.h"

namespace velt {

bool ReleaseRegistry::Add(Releasable& entry) {
  for (auto& slot : entries_) {
    if (slot.load() == nullptr) {
      slot.store(&entry);
      return true;
    }
  }
  return false;
}

void ReleaseRegistry::Remove(Releasable& entry) {
  for (auto& slot : entries_) {
    if (slot.load() == &entry) slot.store(nullptr);
  }
}

void ReleaseRegistry::ReleaseAll(Milliseconds limit) {
  for (auto& slot : entries_) {
    if (Releasable* entry = slot.load()) entry->Release(limit);
  }
}

void ReleaseRegistry::ReleaseAllInCrash() noexcept {
  for (auto& slot : entries_) {
    if (Releasable* entry = slot.load()) entry->ReleaseInCrash();
  }
}

}  // namespace velt
