// Colours side by side, from the first at the left to the last at the right.
#pragma once

#include <QWidget>
#include <cstdint>
#include <vector>

namespace velt {

class PaletteStrip : public QWidget {
 public:
  explicit PaletteStrip(QWidget* parent);

  // Each as 0xFFRRGGBB.
  void SetColours(const std::vector<uint32_t>& colours);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  std::vector<uint32_t> colours_;
};

}  // namespace velt
