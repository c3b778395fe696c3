// What has to hold for every input. When it does not, the fuzzer keeps the input and tells of it.
#pragma once

#include <cstdio>
#include <cstdlib>

inline void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "Not so for this input: %s\n", what);
  std::abort();
}
