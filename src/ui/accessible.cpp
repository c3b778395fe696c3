#include "ui/accessible.h"

#include <QAccessibleWidget>

#include "ui/click_label.h"
#include "ui/lamp_widget.h"
#include "ui/main_window.h"
#include "ui/meter_widget.h"
#include "ui/palette_strip.h"
#include "ui/scale_strip.h"
#include "ui/scope_widget.h"

namespace velt {
namespace {

class SpokenWidget : public QAccessibleWidget {
 public:
  using QAccessibleWidget::QAccessibleWidget;
};

class SpokenLabel : public QAccessibleWidget {
 public:
  explicit SpokenLabel(ClickLabel& label) : QAccessibleWidget(&label), label_(label) {}

  QAccessible::Role role() const override { return label_.SpokenRole(); }

  QStringList actionNames() const override {
    QStringList names = QAccessibleWidget::actionNames();
    if (label_.Acts()) names.prepend(pressAction());
    return names;
  }
  void doAction(const QString& name) override {
    if (name == pressAction() && label_.Acts()) return label_.animateClick();
    QAccessibleWidget::doAction(name);
  }

 private:
  ClickLabel& label_;
};

// Asked for, not announced: it is another one with every tick.
class SpokenMeter : public QAccessibleWidget, public QAccessibleValueInterface {
 public:
  explicit SpokenMeter(MeterWidget& meter)
      : QAccessibleWidget(&meter, QAccessible::ProgressBar), meter_(meter) {}

  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::ValueInterface) return static_cast<QAccessibleValueInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
  }
  QVariant currentValue() const override { return meter_.Percent(); }
  void setCurrentValue(const QVariant&) override {}
  QVariant minimumValue() const override { return 0; }
  QVariant maximumValue() const override { return 100; }
  QVariant minimumStepSize() const override { return 1; }

 private:
  MeterWidget& meter_;
};

// By the object, as the widgets have no class names of their own in Qt's books.
QAccessibleInterface* Make(const QString&, QObject* object) {
  if (auto* label = dynamic_cast<ClickLabel*>(object)) return new SpokenLabel(*label);
  if (auto* meter = dynamic_cast<MeterWidget*>(object)) return new SpokenMeter(*meter);
  if (auto* window = dynamic_cast<MainWindow*>(object)) {
    return new SpokenWidget(window, QAccessible::Window);
  }
  if (dynamic_cast<ScopeWidget*>(object) != nullptr ||
      dynamic_cast<ScaleStrip*>(object) != nullptr ||
      dynamic_cast<PaletteStrip*>(object) != nullptr ||
      dynamic_cast<LampWidget*>(object) != nullptr) {
    return new SpokenWidget(static_cast<QWidget*>(object), QAccessible::Graphic);
  }
  return nullptr;
}

}  // namespace

void InstallAccessibility() {
  QAccessible::installFactory(Make);  // again: the same
}

}  // namespace velt
