#include "adapters/rigctld/host_lookup.h"

#include <netdb.h>

#include <mutex>
#include <thread>
#include <utility>

namespace velt {

namespace {

HostLookup::Addresses AddressesOf(const std::string& host) {
  addrinfo hints{};
  hints.ai_socktype = SOCK_STREAM;
  hints.ai_flags = AI_ADDRCONFIG;
  addrinfo* list = nullptr;
  if (getaddrinfo(host.c_str(), nullptr, &hints, &list) != 0) return {};
  HostLookup::Addresses addresses;
  for (const addrinfo* entry = list; entry != nullptr; entry = entry->ai_next) {
    const QHostAddress address(entry->ai_addr);
    if (!address.isNull()) addresses.push_back(address);
  }
  freeaddrinfo(list);
  return addresses;
}

}  // namespace

struct HostLookup::Request {
  std::mutex mutex;
  Scheduler* scheduler;  // null once it was cancelled
  std::function<void(const Addresses&)> found;
};

void HostLookup::Start(const std::string& host, std::function<void(const Addresses&)> found) {
  Cancel();
  request_ = std::make_shared<Request>();
  request_->scheduler = &scheduler_;
  request_->found = [this, found = std::move(found)](const Addresses& addresses) {
    request_.reset();
    found(addresses);
  };
  // Nobody waits for this thread: it ends with the name server's answer or with the program.
  std::thread([request = request_, host] {
    const Addresses addresses = AddressesOf(host);
    const std::lock_guard lock(request->mutex);
    if (request->scheduler == nullptr) return;
    request->scheduler->Post([request, addresses] {
      if (request->scheduler != nullptr) std::exchange(request->found, {})(addresses);
    });
  }).detach();
}

void HostLookup::Cancel() {
  const auto request = std::exchange(request_, nullptr);
  if (!request) return;
  const std::lock_guard lock(request->mutex);
  request->scheduler = nullptr;
}

}  // namespace velt
