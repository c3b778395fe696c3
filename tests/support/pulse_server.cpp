#include "support/pulse_server.h"

#include <sndfile.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>
#include <stdexcept>

namespace velt {

PulseServer::PulseServer(Sound sound) : sound_(sound) {
  std::filesystem::create_directory(folder_.Path() / "home");
  Restart();
}

std::vector<std::string> PulseServer::Environment() const {
  const std::string folder = folder_.Path().string();
  return {"PULSE_SERVER=unix:" + folder + "/pulse.sock", "XDG_RUNTIME_DIR=" + folder,
          "HOME=" + folder + "/home"};
}

void PulseServer::ExportEnvironment() const {
  for (const std::string& entry : Environment()) {
    const size_t equals = entry.find('=');
    setenv(entry.substr(0, equals).c_str(), entry.c_str() + equals + 1, 1);
  }
}

void PulseServer::Restart() {
  process_.reset();
  std::vector<std::string> command = {"pulseaudio",          "-n",
                                      "--daemonize=no",      "--use-pid-file=no",
                                      "--exit-idle-time=-1", "--disallow-exit",
                                      "--high-priority=no",  "--realtime=no"};
  const std::string socket = (folder_ / "pulse.sock").string();
  command.push_back("--load=module-native-protocol-unix auth-anonymous=1 socket=" + socket);
  // With rewinds the first block would take 2 s.
  const char* sink = "--load=module-null-sink sink_name=test rate=44100 norewinds=1";
  if (sound_ == Sound::NullSink) command.emplace_back(sink);
  process_ = std::make_unique<Process>(
      command, Process::Options{Environment(), folder_.Path() / "pulseaudio.log"});
  const auto answers = [this] {
    Process client({"pactl", "info"}, {.environment = Environment()});
    return client.WaitForEnd(std::chrono::seconds(5)) && client.ExitCode() == 0;
  };
  if (!WaitUntil(answers, std::chrono::seconds(5))) {
    throw std::runtime_error("pulseaudio: " + ReadText(folder_.Path() / "pulseaudio.log"));
  }
}

std::string PulseServer::Pactl(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), "pactl");
  const std::filesystem::path output = folder_.Path() / "pactl.out";
  std::filesystem::remove(output);
  Process pactl(arguments, {Environment(), output});
  const bool ended = pactl.WaitForEnd(std::chrono::seconds(5));
  const std::string text = ReadText(output);
  if (!ended || pactl.ExitCode() != 0) throw std::runtime_error("pactl: " + text);
  return text;
}

std::unique_ptr<Process> PulseServer::PlayTone(double frequencyHz) {
  const auto file = folder_.Path() / "tone.wav";
  WriteToneFile(file, frequencyHz, 60);
  return std::make_unique<Process>(
      std::vector<std::string>{"paplay", "--latency-msec=50", "--device=test", file.string()},
      Process::Options{Environment(), folder_.Path() / "paplay.log"});
}

double PulseServer::MonitorHz() {
  const auto file = folder_.Path() / "monitor.raw";
  const Process recorder({"parec", "--device=test.monitor", "--format=s16le", "--rate=44100",
                          "--channels=1", "--latency-msec=20"},
                         {Environment(), file});
  constexpr size_t kSamples = 12000;
  std::vector<int16_t> heard;
  const auto isEnough = [&] {
    const std::string bytes = ReadText(file);
    heard.resize(bytes.size() / sizeof(int16_t));
    if (!heard.empty()) std::memcpy(heard.data(), bytes.data(), heard.size() * sizeof(int16_t));
    heard.erase(heard.begin(), std::ranges::find_if(heard, [](int16_t s) { return s != 0; }));
    return heard.size() > kSamples;
  };
  if (!WaitUntil(isEnough, std::chrono::seconds(5))) return 0;
  int upward = 0;
  for (size_t i = 1; i < kSamples; ++i) upward += heard[i - 1] < 0 && heard[i] >= 0 ? 1 : 0;
  return upward * 44100.0 / kSamples;
}

void WriteToneFile(const std::filesystem::path& file, double frequencyHz, double seconds,
                   int rateHz, int channels, int format) {
  SF_INFO info{0, rateHz, channels, format != 0 ? format : SF_FORMAT_WAV | SF_FORMAT_PCM_16, 0, 0};
  std::vector<float> samples;
  for (int i = 0; i < static_cast<int>(seconds * rateHz); ++i) {
    const double phase = 2 * std::numbers::pi * frequencyHz * i / rateHz;
    samples.insert(samples.end(), static_cast<size_t>(channels),
                   static_cast<float>(std::sin(phase) / 2));
  }
  SNDFILE* sound = sf_open(file.c_str(), SFM_WRITE, &info);
  sf_write_float(sound, samples.data(), std::ssize(samples));
  sf_close(sound);
}

}  // namespace velt
