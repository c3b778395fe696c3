#include "rig/serial_setup.h"

namespace velt {

SerialSetup::SerialSetup(const Parts& parts) : parts_(parts) {}

void SerialSetup::ReadRS232() {
  const FileContent file = parts_.files.Read(parts_.installation.engineFolder / "RS232.cfg");
  const SerialConfig config = file.error == 0 ? ReadSerialConfig(file.bytes) : SerialConfig();
  if (config != config_) Apply(config);
}

void SerialSetup::Close() {
  parts_.arduino.Use(false);
  parts_.port.Close();
}

void SerialSetup::Apply(const SerialConfig& config) {
  parts_.ptt.LeaveSerialPort();
  Close();
  config_ = config;
  parts_.state.pttMethod = config.pttMethod;
  const bool byLines = config.UsesPort() && config.pttMethod == "COM";
  parts_.lines.SetLines(byLines && config.raisesDtr, byLines && config.raisesRts);
  if (config.UsesPort()) {
    parts_.port.SetCommPort(config.portNumber);
    parts_.port.SetSettings(config.settings);
    parts_.port.SetDTREnable(config.raisesDtr);
    parts_.port.SetRTSEnable(config.raisesRts);
    if (config.pttMethod == "ARDUINO") parts_.arduino.Use(true);
  }
  parts_.counter.FollowMethod();
}

}  // namespace velt
