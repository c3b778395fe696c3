// Pictures on the desktop's clipboard and as PNG files.
#pragma once

#include "ports/pictures.h"

namespace velt {

class QtPictures : public Pictures {
 public:
  void CopyToClipboard(const PictureView& picture) override;
  std::string Png(const PictureView& picture) const override;
};

}  // namespace velt
