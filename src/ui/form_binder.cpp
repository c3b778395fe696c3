#include "ui/form_binder.h"

#include <QAbstractEventDispatcher>
#include <QAction>
#include <QButtonGroup>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QSignalBlocker>
#include <QSlider>
#include <QToolButton>

#include "ui/click_label.h"
#include "ui/lamp_widget.h"
#include "ui/meter_widget.h"
#include "ui/palette_strip.h"
#include "ui/press_button.h"
#include "ui/qt_text.h"
#include "ui/scope_widget.h"
#include "ui/swatch_button.h"
#include "ui/symbol_button.h"
#include "ui/text_binding.h"

namespace velt {
namespace {

// Changes that showing a change brings about are shown too, but not without an end in one turn.
constexpr int kMostRounds = 8;

// A text for a widget that takes "&" as a mark: each "&" of it is shown, and the letter acts.
QString Marked(const std::string& caption, QChar accessKey) {
  QString text = PlainCaption(caption).replace("&", "&&");
  const qsizetype at = accessKey.isNull() ? -1 : text.indexOf(accessKey);
  if (at >= 0) text.insert(at, '&');
  return text;
}

void ShowName(QWidget* widget, const QString& name, const QString& shown) {
  const QString spoken = QString(name).replace("%1", shown);
  if (widget->accessibleName() != spoken) widget->setAccessibleName(spoken);
}

// What a label shows for its caption.
QString Shown(const Label& control, const Words& words) {
  const QString caption = ToQt(control.caption.Get());
  const QString text = words.spelled == nullptr ? caption : words.spelled(caption);
  return text.isEmpty() ? words.unknown : text;
}

// A tool tip that holds the text, which may be too long for its place.
void ShowToolTip(const Label& control, QWidget* widget, const Words& words, const QString& shown) {
  if (!control.toolTip.Get().empty() || !words.toolTip.contains("%1")) return;
  const QString text = QString(words.toolTip).replace("%1", shown);
  if (widget->toolTip() != text) widget->setToolTip(text);
}

QString ColourName(LampColour colour) {
  switch (colour) {
    case LampColour::Green:
      return "green";
    case LampColour::Amber:
      return "amber";
    case LampColour::Grey:
      break;
  }
  return "grey";
}

void ShowCaption(const std::string& caption, QAbstractButton* widget, const Words& words) {
  const QString text = Marked(caption, words.accessKey);
  if (widget->text() != text) widget->setText(text);
  ShowName(widget, words.name, PlainCaption(caption));
}

void ShowChecked(bool checked, QAbstractButton* widget) {
  const QSignalBlocker quiet(widget);
  widget->setChecked(checked);
}

QStringList ListOf(const std::vector<std::string>& texts) {
  QStringList list;
  for (const std::string& text : texts) list.append(ToQt(text));
  return list;
}

}  // namespace

FormBinder::FormBinder(Form& form, Places places) : form_(form), places_(places) {
  // Before the loop waits, everything that ran in this turn has run to its end.
  connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, this,
          [this] { Sync(); });
}

FormBinder::~FormBinder() = default;

void FormBinder::Watch(const Control& control, std::function<void()> show) {
  show();
  shows_[&control].push_back(std::move(show));
}

void FormBinder::Mirror(const Control& control, QWidget* widget, const Words& words) {
  ShowName(widget, words.name, {});
  widget->setToolTip(words.toolTip);
  Watch(control, [this, &control, widget, words] {
    const Rectangle& place = control.place.Get();
    bool shown = control.visible;
    if (places_ == Places::OfForm) {
      const QRect wanted(place.left, place.top, place.width, place.height);
      if (widget->geometry() != wanted) widget->setGeometry(wanted);
      shown = shown && !wanted.isEmpty();
    }
    if (widget->isHidden() == shown) widget->setVisible(shown);
    if (widget->isEnabled() != control.enabled) widget->setEnabled(control.enabled);
    const std::string& told = control.toolTip;
    const bool tellsHow = !control.enabled && !words.toEnable.isEmpty();
    const QString toolTip = tellsHow ? words.toEnable : told.empty() ? words.toolTip : ToQt(told);
    if (widget->toolTip() != toolTip) widget->setToolTip(toolTip);
  });
}

ClickLabel* FormBinder::Bind(const Label& control, ClickLabel* widget, const Words& words) {
  connect(widget, &ClickLabel::clicked, this, [&control] { control.Click(); });
  Mirror(control, widget, words);
  Watch(control, [&control, widget, words] {
    const QString text = Shown(control, words);
    widget->SetText(text);
    ShowName(widget, words.name, text);
    ShowToolTip(control, widget, words, text);
  });
  return widget;
}

ClickLabel* FormBinder::Bind(const RigLabel& control, ClickLabel* widget, const Words& words) {
  connect(widget, &ClickLabel::clicked, this, [&control] { control.Click(); });
  Mirror(control, widget, words);
  Watch(control, [&control, widget, words] {
    const QString text = Shown(control, words);
    widget->SetText(text);
    widget->SetStale(control.stale);
    // What is pale is to be heard, too.
    ShowName(widget, words.name, control.stale ? text + " (last known)" : text);
  });
  return widget;
}

// Texts from outside are never taken as markup.
QLabel* FormBinder::Bind(const Label& control, QLabel* widget, const Words& words) {
  widget->setTextFormat(Qt::PlainText);
  Mirror(control, widget, words);
  Watch(control, [&control, widget, words] {
    const QString text = Shown(control, words);
    if (widget->text() != text) widget->setText(text);
    ShowName(widget, words.name, text);
  });
  return widget;
}

QLabel* FormBinder::Bind(const RigLabel& control, QLabel* widget, const Words& words) {
  Bind(static_cast<const Label&>(control), widget, words);
  Watch(control, [&control, widget] {
    widget->setForegroundRole(control.stale ? QPalette::PlaceholderText : QPalette::WindowText);
  });
  return widget;
}

QGroupBox* FormBinder::Bind(const Frame& control, QGroupBox* widget) {
  Mirror(control, widget, {});
  Watch(control, [&control, widget] {
    const QString title = Marked(control.caption, {});
    if (widget->title() != title) widget->setTitle(title);
  });
  return widget;
}

LampWidget* FormBinder::Bind(const Lamp& control, LampWidget* widget, const Words& words) {
  Mirror(control, widget, words);
  Watch(control, [&control, widget, words] {
    widget->SetColour(control.colour);
    ShowName(widget, words.name, ColourName(control.colour));
  });
  return widget;
}

QAbstractButton* FormBinder::Bind(const Button& control, QAbstractButton* widget,
                                  const Words& words) {
  connect(widget, &QAbstractButton::clicked, this, [&control] { control.Click(); });
  Mirror(control, widget, words);
  Watch(control, [&control, widget, words] { ShowCaption(control.caption, widget, words); });
  return widget;
}

SwatchButton* FormBinder::Bind(const ColourButton& control, SwatchButton* widget,
                               const Words& words) {
  connect(widget, &QAbstractButton::clicked, this, [&control] { control.Click(); });
  Mirror(control, widget, words);
  Watch(control, [&control, widget, words] {
    widget->SetColour(control.colour);
    ShowName(widget, words.name,
             PlainCaption(control.caption.Get()) + ": " + ToQt(control.value.Get()));
  });
  return widget;
}

PaletteStrip* FormBinder::Bind(const PalettePicture& control, PaletteStrip* widget,
                               const Words& words) {
  Mirror(control, widget, words);
  Watch(control, [&control, widget, words] {
    widget->SetColours(control.colours);
    ShowName(widget, words.name, ToQt(control.caption.Get()));
  });
  return widget;
}

QAbstractButton* FormBinder::Bind(const Image& control, QAbstractButton* widget,
                                  const Words& words) {
  connect(widget, &QAbstractButton::clicked, this, [&control] { control.Click(); });
  Mirror(control, widget, words);
  Watch(control, [&control, widget, words] { ShowCaption(control.tag, widget, words); });
  return widget;
}

SymbolButton* FormBinder::Bind(const Image& control, SymbolButton* widget, const Words& words) {
  Bind(control, static_cast<QAbstractButton*>(widget), words);
  Watch(control, [&control, widget] { widget->SetSymbol(control.tag.Get()); });
  widget->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(widget, &QWidget::customContextMenuRequested, this, [&control] { control.UserMenu(); });
  return widget;
}

QAbstractButton* FormBinder::Bind(CheckBox& control, QAbstractButton* widget, const Words& words) {
  widget->setCheckable(true);
  connect(widget, &QAbstractButton::toggled, this,
          [&control](bool checked) { control.UserPick(checked); });
  Mirror(control, widget, words);
  Watch(control, [&control, widget, words] {
    ShowCaption(control.caption, widget, words);
    ShowChecked(control.value != 0, widget);
  });
  return widget;
}

QAbstractButton* FormBinder::Bind(OptionButton& control, QAbstractButton* widget,
                                  QButtonGroup& group, const Words& words) {
  widget->setCheckable(true);
  group.addButton(widget);
  connect(widget, &QAbstractButton::toggled, this, [&control](bool checked) {
    if (checked) control.UserPick();
  });
  Mirror(control, widget, words);
  Watch(control, [&control, widget, &group, words] {
    ShowCaption(control.caption, widget, words);
    // An exclusive group keeps its last button checked.
    group.setExclusive(false);
    ShowChecked(control.value, widget);
    group.setExclusive(true);
  });
  return widget;
}

PressButton* FormBinder::Bind(const OptionButton& control, PressButton* widget,
                              const Words& words) {
  connect(widget, &PressButton::pressed, this, [&control] { control.UserPress(1); });
  connect(widget, &PressButton::customContextMenuRequested, this,
          [&control] { control.UserPress(2); });
  // By a screen reader, which turns the button over.
  connect(widget, &PressButton::toggled, this, [&control, widget] {
    ShowChecked(control.value, widget);
    control.UserPress(1);
  });
  Mirror(control, widget, words);
  Watch(control, [&control, widget, words] {
    ShowCaption(control.caption, widget, words);
    ShowChecked(control.value, widget);
  });
  return widget;
}

QComboBox* FormBinder::Bind(ListBox& control, QComboBox* widget, const Words& words) {
  connect(widget, &QComboBox::activated, this, [&control](int index) { control.UserPick(index); });
  if (widget->isEditable()) {
    connect(widget->lineEdit(), &QLineEdit::textEdited, this,
            [&control](const QString& typed) { control.UserText(FromQt(typed)); });
  }
  Mirror(control, widget, words);
  Watch(control, [&control, widget, shown = std::vector<std::string>()]() mutable {
    const QSignalBlocker quiet(widget);
    if (shown != control.items.Get()) {
      shown = control.items;
      widget->clear();
      widget->addItems(ListOf(shown));
    }
    const int index = control.listIndex < 0 ? control.inForce : control.listIndex;
    if (widget->currentIndex() != index) widget->setCurrentIndex(index);
    if (!widget->isEditable()) return;
    const QString text = ToQt(control.text.Get());
    if (widget->currentText() != text) widget->setEditText(text);
  });
  return widget;
}

QListWidget* FormBinder::Bind(ListBox& control, QListWidget* widget, const Words& words) {
  connect(widget, &QListWidget::currentRowChanged, this,
          [&control](int index) { control.UserPick(index); });
  Mirror(control, widget, words);
  Watch(control, [&control, widget, shown = std::vector<std::string>()]() mutable {
    const QSignalBlocker quiet(widget);
    if (shown != control.items.Get()) {
      shown = control.items;
      widget->clear();
      widget->addItems(ListOf(shown));
    }
    if (widget->currentRow() != control.listIndex) widget->setCurrentRow(control.listIndex);
  });
  return widget;
}

QLineEdit* FormBinder::Bind(TextBox& control, QLineEdit* widget, const Words& words,
                            Typing typing) {
  auto* text = new TextBinding(control, *widget, typing, this);
  texts_.push_back(text);
  connect(widget, &QLineEdit::returnPressed, this, [&control] { control.UserEnter(); });
  connections_ += control.focusWanted.Listen([widget] {
    widget->setFocus();
    widget->selectAll();
  });
  Mirror(control, widget, words);
  Watch(control, [text] { text->Show(); });
  return widget;
}

// What a slider sets grows as the value falls, so the least value is at the top. The widget counts
// from the other end: its keys, its wheel and what is read out then rise with what is seen.
QSlider* FormBinder::Bind(SliderControl& control, QSlider* widget, const Words& words) {
  const int ends = control.minimum + control.maximum;
  widget->setRange(control.minimum, control.maximum);
  connect(widget, &QSlider::valueChanged, this,
          [&control, ends](int shown) { control.UserPick(ends - shown); });
  Mirror(control, widget, words);
  Watch(control, [&control, widget, ends] {
    const QSignalBlocker quiet(widget);
    widget->setValue(ends - control.value);
  });
  return widget;
}

QAction* FormBinder::Bind(const MenuItem& control, QAction* action) {
  action->setCheckable(true);
  const auto show = [&control, action] {
    action->setText(ToQt(control.caption.Get()));
    action->setChecked(control.checked);
    action->setEnabled(control.enabled);
    action->setVisible(control.visible);
  };
  connect(action, &QAction::triggered, this, [&control, show] {
    control.Click();
    show();  // triggering has turned the mark over
  });
  Watch(control, show);
  return action;
}

MeterWidget* FormBinder::Bind(const MeterPicture& control, MeterWidget* widget,
                              const Words& words) {
  live_.push_back(widget);
  Mirror(control, widget, words);
  Watch(control, [&control, widget] { widget->SetLevel(-control.topTwips); });
  return widget;
}

ScopeWidget* FormBinder::Bind(const ScopeControl& control, ScopeWidget* widget,
                              const Words& words) {
  live_.push_back(widget);
  Mirror(control, widget, words);
  Watch(control, [&control, widget] { widget->Follow(control); });
  connections_ += widget->moved.Listen([&control](int x) { control.UserMove(x); });
  connections_ +=
      widget->pressed.Listen([&control](int button, int x) { control.UserPress(button, x); });
  connections_ += widget->released.Listen([&control](int button) { control.UserRelease(button); });
  return widget;
}

void FormBinder::Sync() {
  // Taken out, as what is shown may call this again.
  std::vector<Control*> changed = std::move(spare_);
  for (int round = 0; round < kMostRounds; ++round) {
    form_.TakeChanged(changed);
    if (changed.empty()) break;
    for (const Control* control : changed) {
      const auto found = shows_.find(control);
      if (found == shows_.end()) continue;
      for (const auto& show : found->second) show();
    }
  }
  if (!changed.empty()) QAbstractEventDispatcher::instance()->wakeUp();
  spare_ = std::move(changed);
  LiveWidget::PaintChanged(live_);
}

void FormBinder::DropTyping() {
  for (TextBinding* text : texts_) text->DropTyping();
}

}  // namespace velt
