#include "adapters/pulse/pulse_connection.h"

#include <pulse/error.h>

#include <algorithm>
#include <new>

namespace velt {
namespace {

// The context cancels what is under way when it is disconnected; nobody waits for an operation.
void Forget(pa_operation* operation) {
  if (operation) pa_operation_unref(operation);
}

}  // namespace

const PulseSource* PulseSources::Find(std::string_view name) const {
  const auto found = std::ranges::find(sources, name, &PulseSource::name);
  return found == sources.end() ? nullptr : &*found;
}

std::vector<AudioDevice> PulseSources::Devices() const {
  std::vector<AudioDevice> devices;
  for (const PulseSource& source : sources) devices.push_back({source.name, source.Label()});
  return devices;
}

std::string NoServerText(const std::string& reason) {
  return "No sound server: " + reason + ".";
}

PulseConnection::PulseConnection(const PulseLoop& loop, Listener& listener)
    : listener_(listener), context_(pa_context_new(&loop.Api(), "VELT-SA")) {
  if (!context_) throw std::bad_alloc();
}

PulseConnection::~PulseConnection() {
  pa_context_set_state_callback(context_, nullptr, nullptr);
  pa_context_set_subscribe_callback(context_, nullptr, nullptr);
  pa_context_disconnect(context_);
  pa_context_unref(context_);
}

void PulseConnection::Connect() {
  pa_context_set_state_callback(
      context_,
      [](pa_context*, void* self) { static_cast<PulseConnection*>(self)->StateChanged(); }, this);
  // Starting a server is the desktop's affair, and would wait for it.
  pa_context_connect(context_, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr);
}

void PulseConnection::StateChanged() {
  const pa_context_state_t state = pa_context_get_state(context_);
  if (state == PA_CONTEXT_READY) {
    const auto changed = [](pa_context*, pa_subscription_event_type_t type, uint32_t, void* self) {
      // Changed sources are left out: each step of a volume slider is one.
      const auto facility = type & PA_SUBSCRIPTION_EVENT_FACILITY_MASK;
      const auto kind = type & PA_SUBSCRIPTION_EVENT_TYPE_MASK;
      if (facility == PA_SUBSCRIPTION_EVENT_SERVER || kind != PA_SUBSCRIPTION_EVENT_CHANGE) {
        static_cast<PulseConnection*>(self)->Refresh();
      }
    };
    pa_context_set_subscribe_callback(context_, changed, this);
    constexpr auto mask = static_cast<pa_subscription_mask_t>(PA_SUBSCRIPTION_MASK_SOURCE |
                                                              PA_SUBSCRIPTION_MASK_SERVER);
    Forget(pa_context_subscribe(context_, mask, nullptr, nullptr));
    Refresh();
  } else if (state == PA_CONTEXT_FAILED || state == PA_CONTEXT_TERMINATED) {
    listener_.OnConnectionFailed(pa_strerror(pa_context_errno(context_)));
  }
}

void PulseConnection::Refresh() {
  if (pa_context_get_state(context_) != PA_CONTEXT_READY) return;  // being ready brings the list
  outdated_ = collecting_;
  if (collecting_) return;
  collecting_ = true;
  collected_ = {};
  const auto server = [](pa_context*, const pa_server_info* info, void* self) {
    if (!info) return;
    PulseSources& collected = static_cast<PulseConnection*>(self)->collected_;
    if (info->default_source_name) collected.defaultName = info->default_source_name;
    if (info->server_name) collected.server = info->server_name;
    if (info->server_version) collected.server += std::string(" ") + info->server_version;
  };
  const auto source = [](pa_context*, const pa_source_info* info, int last, void* self) {
    static_cast<PulseConnection*>(self)->SourceAnswered(info, last);
  };
  Forget(pa_context_get_server_info(context_, server, this));
  Forget(pa_context_get_source_info_list(context_, source, this));
}

void PulseConnection::SourceAnswered(const pa_source_info* info, int last) {
  if (last == 0) {
    collected_.sources.push_back({info->name, info->description, info->index});
    return;
  }
  collecting_ = false;
  if (last < 0) {
    listener_.OnConnectionFailed(pa_strerror(pa_context_errno(context_)));
  } else if (outdated_) {
    Refresh();
  } else {
    listener_.OnSources(collected_);
  }
}

}  // namespace velt
