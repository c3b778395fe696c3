#include "text/error_text.h"

#include <system_error>

namespace velt {

std::string ErrorText(int error) {
  return std::generic_category().message(error);
}

}  // namespace velt
