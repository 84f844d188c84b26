#pragma once

#include <memory>

#include "core/forms/form.h"
#include "store/data_control.h"

namespace tavora {

// Opens the sort order named by the Tag of the record editor's data control
// (`Data1`), falling back to the full list by title when the sort is empty.
// `window` carries the wait pointer meanwhile.
void GetQryScrn(DataControl& data1, const std::shared_ptr<Library>& library, Form& window);

}  // namespace tavora
