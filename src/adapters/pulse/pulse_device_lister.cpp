#include "adapters/pulse/pulse_device_lister.h"

namespace velt {

PulseDeviceLister::PulseDeviceLister(Scheduler& scheduler)
    : scheduler_(scheduler),
      start_(loop_,
             [this] {
               connection_ = std::make_unique<PulseConnection>(
                   loop_, static_cast<PulseConnection::Listener&>(*this));
               connection_->Connect();
             }),
      limit_(loop_, [this] {
        Answer({{}, {}, kNoAnswerText});
      }) {}

PulseDeviceLister::~PulseDeviceLister() {
  const PulseLoop::Lock lock(loop_);
  start_.Stop();
  limit_.Stop();
  connection_.reset();
}

void PulseDeviceLister::List(std::function<void(const DeviceListing&)> done) {
  const PulseLoop::Lock lock(loop_);
  connection_.reset();
  done_ = std::make_shared<std::function<void(const DeviceListing&)>>(std::move(done));
  limit_.Start(Milliseconds(3000));
  start_.Start(Milliseconds(0));
}

void PulseDeviceLister::OnSources(const PulseSources& sources) {
  Answer({sources.Devices(), sources.defaultName, {}, sources.server});
}

void PulseDeviceLister::OnConnectionFailed(const std::string& reason) {
  Answer({{}, {}, NoServerText(reason)});
}

void PulseDeviceLister::Answer(DeviceListing listing) {
  limit_.Stop();
  connection_.reset();
  scheduler_.Post([done = std::weak_ptr(done_), listing = std::move(listing)] {
    if (const auto alive = done.lock()) (*alive)(listing);
  });
}

}  // namespace velt
