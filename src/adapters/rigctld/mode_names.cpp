#include "adapters/rigctld/mode_names.h"

#include "ports/omnirig.h"

namespace velt {

namespace {

struct ModeRow {
  int32_t mode;
  std::string_view name;
};

// The first row of a mode is the name that is sent.
constexpr ModeRow kModes[] = {
    {PM_SSB_U, "USB"}, {PM_SSB_L, "LSB"}, {PM_CW_U, "CW"},      {PM_CW_L, "CWR"},
    {PM_AM, "AM"},     {PM_FM, "FM"},     {PM_DIG_U, "PKTUSB"}, {PM_AM, "AMN"},
    {PM_AM, "AMS"},    {PM_AM, "SAM"},    {PM_FM, "FMN"},       {PM_FM, "WFM"},
};

}  // namespace

std::string_view ModeName(int32_t mode) {
  for (const ModeRow& row : kModes) {
    if (row.mode == mode) return row.name;
  }
  return {};
}

int32_t ModeOfName(std::string_view name) {
  for (const ModeRow& row : kModes) {
    if (row.name == name) return row.mode;
  }
  return 0;
}

}  // namespace velt
