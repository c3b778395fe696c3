// The main display: the picture that the analysis made, with grid and marker lines over it.
#pragma once

#include <QRect>
#include <QVector>
#include <QWidget>
#include <functional>

#include "form/main_form.h"
#include "spectrum/raster.h"

namespace velt {

class ScopeWidget : public QWidget {
 public:
  ScopeWidget(const ScopeControl& scope, std::function<const Raster&()> picture, QWidget* parent);

  // A new picture is there.
  void ShowFrame();
  // Lines or colours changed.
  void ShowLines();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  static void Collect(const std::vector<ScopeLine>& lines, QVector<QRect>& rects);

  const ScopeControl& scope_;
  std::function<const Raster&()> picture_;
  QVector<QRect> grid_;
  QVector<QRect> markers_;
};

}  // namespace velt
