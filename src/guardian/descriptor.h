// Owner of a file descriptor.
#pragma once

#include <unistd.h>

#include <utility>

namespace velt {

class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    if (this != &other) {
      Close();
      number_ = std::exchange(other.number_, -1);
    }
    return *this;
  }
  ~Descriptor() { Close(); }

  void Close() {
    if (number_ >= 0) ::close(number_);
    number_ = -1;
  }
  int Number() const { return number_; }  // -1: none
  bool IsOpen() const { return number_ >= 0; }

 private:
  int number_ = -1;
};

}  // namespace velt
