#include "ui/panel_view.h"

#include <QApplication>
#include <QFrame>
#include <QLineEdit>
#include <QMouseEvent>
#include <QStyleOptionComboBox>
#include <QStylePainter>
#include <QToolButton>
#include <array>

#include "ui/choice_box.h"
#include "ui/click_label.h"
#include "ui/press_button.h"
#include "ui/qt_text.h"

namespace velt {
namespace {

constexpr int kFrequencyPixels = 19;
constexpr int kPanelTextPixels = 11;
constexpr int kBesideMode = 4;

template <class W>
W* WithFont(W* widget, int pixels, bool bold = false) {
  QFont font = widget->font();
  font.setPixelSize(pixels);
  font.setBold(bold);
  widget->setFont(font);
  return widget;
}

// Typing replaces what stands in it, wherever it was clicked.
class NumberEdit : public QLineEdit {
 public:
  explicit NumberEdit(QWidget* parent) : QLineEdit(parent) {
    connect(this, &QLineEdit::returnPressed, this, &QLineEdit::selectAll);
  }

 protected:
  void focusInEvent(QFocusEvent* event) override {
    QLineEdit::focusInEvent(event);
    selectAll();
  }
  void mousePressEvent(QMouseEvent*) override { selectAll(); }
};

// Shows the mode that is set even where it is none of the list; the right button, or the menu key,
// asks for another entry.
class ModeBox : public ChoiceBox {
 public:
  ModeBox(ListBox& box, QWidget* parent) : ChoiceBox(parent) {
    setContextMenuPolicy(Qt::CustomContextMenu);
    connect(this, &QWidget::customContextMenuRequested, this, [&box] { box.UserDoubleClick(); });
  }

 protected:
  // A style shows a mode that is none of the list as pale as if there were none, and cuts it off.
  void paintEvent(QPaintEvent*) override {
    QStylePainter painter(this);
    QStyleOptionComboBox shown;
    initStyleOption(&shown);
    painter.drawComplexControl(QStyle::CC_ComboBox, shown);
    if (currentIndex() < 0) shown.currentText = placeholderText();
    const QRect room =
        style()->subControlRect(QStyle::CC_ComboBox, &shown, QStyle::SC_ComboBoxEditField, this);
    shown.currentText =
        fontMetrics().elidedText(shown.currentText, Qt::ElideRight, room.width() - kBesideMode);
    painter.drawControl(QStyle::CE_ComboBoxLabel, shown);
  }
};

PressButton* MakePress(QWidget* window) {
  return WithFont(new PressButton(window), kPanelTextPixels);
}

}  // namespace

void BindPanel(FormBinder& binder, Main& form, QWidget* window) {
  auto* edge = new QFrame(window);
  edge->setFrameShape(QFrame::VLine);
  edge->setFrameShadow(QFrame::Sunken);
  binder.Watch(form.picExpand, [&form, edge] {
    const Rectangle place = form.picExpand.place;
    edge->setGeometry(place.left, place.top + 3, 2, place.height - 6);
    edge->setVisible(form.picExpand.visible && place.width > 0);
  });

  auto* frequency =
      binder.Bind(form.lblFrequencyExpand, WithFont(new ClickLabel(window), kFrequencyPixels, true),
                  {"Panel frequency %1", "Transceiver frequency"});
  frequency->SetPassive(true);

  auto* modes = WithFont(new ModeBox(form.cmbPresetMode, window), kPanelTextPixels);
  binder.Bind(form.cmbPresetMode, modes,
              {"Modulation mode of the preset",
               "modulation mode (can be set for each frequency)\nRight mouse click to add a mode"});
  binder.Watch(form.cmbPresetMode, [&form, modes] {
    const QString mode = ToQt(form.cmbPresetMode.text.Get());
    modes->setPlaceholderText(mode);
    // A mode that is none of the list is no value to read out.
    modes->setAccessibleDescription(modes->currentIndex() < 0 ? mode : QString());
  });

  auto* manual = WithFont(new NumberEdit(window), kPanelTextPixels);
  manual->setPlaceholderText("kHz");
  binder.Bind(form.txtManualFrequency, manual,
              {"Frequency in kHz", "Enter the frequency in kHz (press enter to set)"});
  auto* set = WithFont(new QToolButton(window), kPanelTextPixels);
  set->setFocusPolicy(Qt::TabFocus);
  binder.Bind(form.cmdokman, set, {"Set the frequency", "Sets the frequency that was entered"});
  QObject::connect(set, &QToolButton::clicked, manual, &QLineEdit::selectAll);

  // The mouse gives the keyboard to the display; who came by keyboard stays.
  const auto giveOn = [&form, window](QToolButton* button) {
    QObject::connect(button, &QToolButton::pressed, window, [&form, button] {
      if (!button->hasFocus()) form.Scope.SetFocus();
    });
  };
  for (auto& [band, option] : form.optBandsFreq) {
    auto* button =
        binder.Bind(*option, MakePress(window),
                    {"Band %1", "Band Preset Memory Banks  (right mouse click to edit)"});
    giveOn(button);
  }
  for (auto& [preset, option] : form.optDefFreqs) {
    binder.Bind(*option, MakePress(window),
                {"Preset %1", "Frequency Presets (right mouse click to edit)"});
  }
  static constexpr std::array<const char*, 6> kSteps{"minus 10 Hz", "minus 1 kHz", "minus 1 Mhz",
                                                     "plus 1 MHz",  "plus 1 kHz",  "plus 10 Hz"};
  for (auto& [index, button] : form.cmdFreqSteps) {
    auto* step = WithFont(new QToolButton(window), kPanelTextPixels);
    step->setFocusPolicy(Qt::TabFocus);
    const char* words = kSteps.at(static_cast<size_t>(index));
    binder.Bind(*button, step, {words, words});
    giveOn(step);
  }
}

}  // namespace velt
