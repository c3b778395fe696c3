#include "rig/serial_setup.h"

#include "platform/watched_file.h"

namespace velt {

SerialSetup::SerialSetup(const Parts& parts, const Ports& ports) : parts_(parts), ports_(ports) {}

void SerialSetup::ReadRS232() {
  WatchedFile file(ports_.files, ports_.clock, parts_.installation.engineFolder / "RS232.cfg");
  file.Look();
  const SerialConfig config = file.IsThere() ? ReadSerialConfig(file.Bytes()) : SerialConfig();
  if (config != config_) Apply(config);
}

void SerialSetup::Close() {
  parts_.arduino.Use(false);
  ports_.port.Close();
}

void SerialSetup::Apply(const SerialConfig& config) {
  parts_.ptt.LeaveSerialPort();
  Close();
  config_ = config;
  parts_.state.pttMethod = config.pttMethod;
  const bool byLines = config.UsesPort() && config.pttMethod == "COM";
  parts_.lines.SetLines(byLines && config.raisesDtr, byLines && config.raisesRts);
  if (config.UsesPort()) {
    ports_.port.SetCommPort(config.portNumber);
    ports_.port.SetSettings(config.settings);
    ports_.port.SetDTREnable(config.raisesDtr);
    ports_.port.SetRTSEnable(config.raisesRts);
    if (config.pttMethod == "ARDUINO") parts_.arduino.Use(true);
  }
  parts_.counter.FollowMethod();
}

}  // namespace velt
