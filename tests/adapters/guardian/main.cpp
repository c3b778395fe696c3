#include <gtest/gtest.h>

#include <string_view>

#include "guardian/run_guardian.h"

// Its guardians run in processes of their own, with short limits.
int main(int argc, char** argv) {
  using velt::Milliseconds;
  if (argc > 1 && std::string_view(argv[1]) == "--guardian") {
    return velt::RunGuardian(
        {.silence = Milliseconds(1500),
         .followUp = {
             .all = Milliseconds(3000), .answer = Milliseconds(700), .key = Milliseconds(2000)}});
  }
  ::testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
