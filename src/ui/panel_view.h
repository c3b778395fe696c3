// The widgets of the expanded rig control panel.
#pragma once

#include "form/main_form.h"
#include "ui/form_binder.h"

class QWidget;

namespace velt {

// Makes them as children of `window`, in the order in which Tab walks through them. `window` and
// `form` have to outlive the binder.
void BindPanel(FormBinder& binder, Main& form, QWidget* window);

}  // namespace velt
