// What screen readers are told about the program's own widgets beyond their names: what they are,
// what can be done with them and what value they have.
#pragma once

namespace velt {

// To be called before the first of them is made; further calls do nothing.
void InstallAccessibility();

}  // namespace velt
