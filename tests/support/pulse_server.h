// A sound server of the test's own: private folder and socket, one null sink "test" whose monitor
// "test.monitor" is the default source.
#pragma once

#include <memory>

#include "support/process.h"

namespace velt {

class PulseServer {
 public:
  enum class Sound { NullSink, None };

  // Returns when the server answers; throws std::runtime_error after 5 s without.
  explicit PulseServer(Sound sound = Sound::NullSink);

  // What a client needs to find this server ("NAME=value").
  std::vector<std::string> Environment() const;
  void ExportEnvironment() const;  // for a client within the test itself

  void Kill() { process_->Kill(); }
  void Signal(int signal) { process_->Signal(signal); }
  void Restart();  // on the same socket

  // What pactl prints. Throws std::runtime_error, with that, when it fails or takes more than 5 s.
  std::string Pactl(std::vector<std::string> arguments);

  // Plays a sine of half the full scale into the sink "test" for as long as the result lives, at
  // most 60 s.
  std::unique_ptr<Process> PlayTone(double frequencyHz);
  // The pitch of what is played into the sink "test" now, by its monitor; 0 when that is silent
  // for 5 s.
  double MonitorHz();

 private:
  TempFolder folder_;
  Sound sound_;
  std::unique_ptr<Process> process_;
};

// A sine in every channel, half the full scale; the format as of libsndfile, 0 for 16-bit WAV.
void WriteToneFile(const std::filesystem::path& file, double frequencyHz, double seconds,
                   int rateHz = 44100, int channels = 1, int format = 0);

}  // namespace velt
