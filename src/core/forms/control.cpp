#include "core/forms/control.h"

namespace tavora {

std::string Control::selected_text() const {
    if (ListIndex >= 0 && ListIndex < static_cast<int>(List.size())) return List[ListIndex];
    return Text;
}

}  // namespace tavora
