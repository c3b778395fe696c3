#include "support/pulse_server.h"

#include <cmath>
#include <cstdint>
#include <fstream>
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
  const auto load = [&](const std::string& module) {
    command.insert(command.end(), {"-L", module});
  };
  load("module-native-protocol-unix auth-anonymous=1 socket=" + (folder_ / "pulse.sock").string());
  // With rewinds the first block would take 2 s.
  if (sound_ == Sound::NullSink) load("module-null-sink sink_name=test rate=44100 norewinds=1");
  process_ = std::make_unique<Process>(
      command, Process::Options{Environment(), folder_.Path() / "pulseaudio.log", {}});
  const auto answers = [this] {
    Process client({"pactl", "info"}, {.environment = Environment()});
    return client.WaitForEnd(std::chrono::seconds(5)) && client.ExitCode() == 0;
  };
  if (!WaitUntil(answers, std::chrono::seconds(5))) {
    throw std::runtime_error("pulseaudio: " + ReadText(folder_.Path() / "pulseaudio.log"));
  }
}

std::string PulseServer::Pactl(const std::vector<std::string>& arguments) {
  std::vector<std::string> command = {"pactl"};
  command.insert(command.end(), arguments.begin(), arguments.end());
  const std::filesystem::path output = folder_.Path() / "pactl.out";
  std::filesystem::remove(output);
  Process pactl(command, {Environment(), output, {}});
  const bool ended = pactl.WaitForEnd(std::chrono::seconds(5));
  std::string text = ReadText(output);
  if (!ended || pactl.ExitCode() != 0) throw std::runtime_error("pactl: " + text);
  if (text.ends_with('\n')) text.pop_back();
  return text;
}

void PulseServer::LoadModule(const std::vector<std::string>& nameAndArguments) {
  std::vector<std::string> arguments = {"load-module"};
  arguments.insert(arguments.end(), nameAndArguments.begin(), nameAndArguments.end());
  Pactl(arguments);
}

std::unique_ptr<Process> PulseServer::PlayTone(double frequencyHz) {
  const auto file = folder_.Path() / "tone.wav";
  WriteToneFile(file, frequencyHz, 60);
  return std::make_unique<Process>(
      std::vector<std::string>{"paplay", "--latency-msec=50", "--device=test", file.string()},
      Process::Options{Environment(), folder_.Path() / "paplay.log", {}});
}

void WriteToneFile(const std::filesystem::path& file, double frequencyHz, double seconds) {
  constexpr uint32_t rateHz = 44100;
  std::vector<int16_t> samples(static_cast<size_t>(seconds * rateHz));
  for (size_t i = 0; i < samples.size(); ++i) {
    const double phase = 2 * std::numbers::pi * frequencyHz * static_cast<double>(i) / rateHz;
    samples[i] = static_cast<int16_t>(std::lround(16384 * std::sin(phase)));
  }
  std::ofstream out(file, std::ios::binary);
  const auto text = [&out](const char* fourLetters) { out.write(fourLetters, 4); };
  const auto number = [&out](uint32_t value, std::streamsize bytes) {
    out.write(reinterpret_cast<const char*>(&value), bytes);
  };
  const auto dataBytes = static_cast<uint32_t>(samples.size() * sizeof(int16_t));
  text("RIFF"), number(36 + dataBytes, 4), text("WAVE");
  text("fmt "), number(16, 4), number(1, 2), number(1, 2);
  number(rateHz, 4), number(2 * rateHz, 4), number(2, 2), number(16, 2);
  text("data"), number(dataBytes, 4);
  out.write(reinterpret_cast<const char*>(samples.data()), dataBytes);
}

}  // namespace velt
