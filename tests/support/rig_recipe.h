// How the CAT server with its rig is released.
#pragma once

#include <tuple>

#include "ports/guardian.h"

namespace velt {

inline ReleaseRecipe RigRecipe(uint16_t port) {
  return {.host = "127.0.0.1",
          .port = port,
          .release = "+T 0\n",
          .ask = "+t\n",
          .answerEnd = "RPRT ",
          .accepted = "RPRT 0",
          .tells = "PTT: ",
          .receives = "PTT: 0"};
}

// All of a recipe but the descriptor, to compare.
inline auto FieldsOf(const ReleaseRecipe& r) {
  return std::tuple(r.host, r.port, r.lowersLines, r.release, r.ask, r.answerEnd, r.accepted,
                    r.tells, r.receives);
}

}  // namespace velt
