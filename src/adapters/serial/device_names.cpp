#include "adapters/serial/device_names.h"

#include "text/numbers.h"
#include "text/paths.h"

namespace velt {

std::filesystem::path DeviceNames::Of(int16_t number) const {
  if (!only_.empty()) return devices_ / only_;
  const auto named = settings_.Get("SerialPorts", "COM" + std::to_string(number));
  if (named && !Trimmed(*named).empty()) {
    return devices_ / TextPath(std::string(Trimmed(*named)));  // a path of its own stays as it is
  }
  const std::string index = std::to_string(number - 1);
  const std::filesystem::path usb = devices_ / ("ttyUSB" + index);
  const std::filesystem::path acm = devices_ / ("ttyACM" + index);
  std::error_code error;
  const bool onlyAcm = !std::filesystem::exists(usb, error) && std::filesystem::exists(acm, error);
  return onlyAcm ? acm : usb;
}

}  // namespace velt
