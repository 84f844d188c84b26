#pragma once

#include <string>

class QWidget;

namespace tavora {
class Form;
}

namespace tavora::ui {

// Sets up `widget` with the layout of the window named `form_name`. False
// when there is no .ui file for it.
bool SetUpLayout(const std::string& form_name, QWidget& widget);

// A plain layout made from the form's controls, for a window that has no
// .ui file yet: a row per control, named as the binder expects.
void SetUpPlainLayout(const Form& form, QWidget& widget);

}  // namespace tavora::ui
