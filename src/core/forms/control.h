#pragma once

#include <string>
#include <vector>

namespace tavora {

// The state of one control of a window, exactly what the rules read and
// write. The Qt layer renders it; no rule lives in a widget.
struct Control {
    std::string Name;
    int Index = -1;  // position in a control array, -1 for a single control

    std::string Caption;
    std::string Text;
    std::string ToolTipText;
    std::string Tag;
    bool Visible = true;
    bool Enabled = true;
    long BackColor = 0xFFFFFF;  // blue, green, red order as the screens take them
    long ForeColor = 0;
    int Value = 0;  // check box: 0 cleared, 1 checked, 2 greyed; option button: -1 chosen

    std::vector<std::string> List;  // list and combo rows
    int ListIndex = -1;

    double Left = 0;
    double Top = 0;
    double Width = 0;
    double Height = 0;

    // The text a combo or list shows for its chosen row, else its text.
    std::string selected_text() const;
    void AddItem(std::string row) { List.push_back(std::move(row)); }
    void Clear() {
        List.clear();
        ListIndex = -1;
    }
};

}  // namespace tavora
