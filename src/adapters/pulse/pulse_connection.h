// One connection to the user's sound server, with its list of sources kept up to date.
#pragma once

#include <pulse/context.h>
#include <pulse/introspect.h>
#include <pulse/subscribe.h>

#include <string>
#include <string_view>
#include <vector>

#include "adapters/pulse/pulse_loop.h"
#include "ports/audio_input.h"

namespace velt {

struct PulseSource {
  std::string name;
  std::string description;
  uint32_t index = PA_INVALID_INDEX;  // no two sources of a server's life share one

  const std::string& Label() const { return description.empty() ? name : description; }
};

struct PulseSources {
  std::vector<PulseSource> sources;
  std::string defaultName;  // empty: the server has none
  std::string server;       // its name and version

  const PulseSource* Find(std::string_view name) const;  // null: there is no such source
  std::vector<AudioDevice> Devices() const;
};

inline constexpr const char* kServerGoneText = "Sound server is gone.";
inline constexpr const char* kNoAnswerText = "Sound server does not answer.";
std::string NoServerText(const std::string& reason);

// Used and destroyed under the loop's lock. A connection that failed stays so: make a new one.
class PulseConnection {
 public:
  // Called on the loop's thread. The connection may be destroyed within each call.
  class Listener {
   public:
    // The connection is up and these are its sources; again whenever one comes or goes, and after
    // Refresh.
    virtual void OnSources(const PulseSources& sources) = 0;
    virtual void OnConnectionFailed(const std::string& reason) = 0;

   protected:
    ~Listener() = default;
  };

  PulseConnection(const PulseLoop& loop, Listener& listener);
  ~PulseConnection();
  PulseConnection(const PulseConnection&) = delete;
  PulseConnection& operator=(const PulseConnection&) = delete;

  // May call OnConnectionFailed before it returns.
  void Connect();

  // OnSources follows with what the server has from now on, not with an older answer.
  void Refresh();

  pa_context& Context() const { return *context_; }

 private:
  void StateChanged();
  void SourceAnswered(const pa_source_info* info, int last);

  Listener& listener_;
  pa_context* context_;
  PulseSources collected_;
  bool collecting_ = false;
  bool outdated_ = false;  // what is being collected was asked for before the latest Refresh
};

}  // namespace velt
