#include <gtest/gtest.h>

#include <string_view>

#include "adapters/guardian/holder.h"
#include "guardian/run_guardian.h"

// The guardian and its holder run in processes of their own; the guardian with short limits.
int main(int argc, char** argv) {
  using velt::Milliseconds;
  const std::string_view word = argc > 1 ? argv[1] : "";
  if (word == "--guardian") {
    return velt::RunGuardian(
        {.silence = Milliseconds(1500),
         .followUp = {.all = Milliseconds(3000), .answer = Milliseconds(700)}});
  }
  if (word == "--holder" && argc == 4) return velt::RunHolder(argc, argv);
  ::testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
