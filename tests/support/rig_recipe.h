// How the CAT server with its rig is released.
#pragma once

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

}  // namespace velt
