// Says what has to be put right, in two lines that are kept free while there is nothing to say.
#pragma once

#include <QLabel>

namespace velt {

class ErrorLabel : public QLabel {
 public:
  explicit ErrorLabel(QWidget* parent);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void FollowPalette();
};

}  // namespace velt
