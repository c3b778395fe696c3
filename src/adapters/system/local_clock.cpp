#include "adapters/system/local_clock.h"

#include <ctime>

namespace velt {

LocalTime LocalClock::Now() const {
  const std::time_t seconds = std::time(nullptr);
  std::tm parts{};
  if (::localtime_r(&seconds, &parts) == nullptr) return {};
  return {.year = parts.tm_year + 1900,
          .month = parts.tm_mon + 1,
          .day = parts.tm_mday,
          .hour = parts.tm_hour,
          .minute = parts.tm_min,
          .second = parts.tm_sec};
}

SteadyTime LocalClock::Elapsed() const {
  std::timespec now{};
  if (::clock_gettime(CLOCK_BOOTTIME, &now) != 0) return std::chrono::steady_clock::now();
  return SteadyTime(std::chrono::seconds(now.tv_sec) + std::chrono::nanoseconds(now.tv_nsec));
}

}  // namespace velt
