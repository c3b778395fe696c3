// Finds what a host's name stands for in a thread of its own: a name server that does not answer
// holds up neither a call nor the end of the program.
#pragma once

#include <QHostAddress>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "ports/scheduler.h"

namespace velt {

class HostLookup {
 public:
  // In the order in which they are to be tried; none when there is no such host.
  using Addresses = std::vector<QHostAddress>;

  explicit HostLookup(Scheduler& scheduler) : scheduler_(scheduler) {}
  ~HostLookup() { Cancel(); }
  HostLookup(const HostLookup&) = delete;
  HostLookup& operator=(const HostLookup&) = delete;

  // `found` is called once on the window's thread, in a later turn of the loop. One that was
  // started before is cancelled.
  void Start(const std::string& host, std::function<void(const Addresses&)> found);
  void Cancel();
  bool Running() const { return request_ != nullptr; }

 private:
  struct Request;

  Scheduler& scheduler_;
  std::shared_ptr<Request> request_;
};

}  // namespace velt
