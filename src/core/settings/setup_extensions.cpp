// The Setup screen's boxes for what the station does beyond the rules: they
// show and save tavora.ini, which the station applies at once.
#include "core/settings/frm_setup.h"
#include "platform/dialogs.h"
#include "platform/path_map.h"

namespace tavora {

namespace {

struct ExtensionBox {
    const char* control;
    const char* setting;  // its name in tavora.ini
    bool check;
};

constexpr ExtensionBox kExtensionBoxes[] = {
    {"chkDeadAir", "Dead Air Watch", true},
    {"txtDeadAirLevel", "Dead Air Level dBFS", false},
    {"txtDeadAirHold", "Dead Air Hold Seconds", false},
    {"txtDeadAirFolder", "Dead Air Fallback Folder", false},
    {"chkLoudness", "Loudness Normalise", true},
    {"txtLoudTarget", "Loudness Target LUFS", false},
    {"txtLoudCeiling", "Loudness Ceiling dBTP", false},
};

}  // namespace

void frmSetup::read_extensions_into_boxes() {
    const Extensions settings = read_extensions(home() / "tavora.ini");
    for (const ExtensionBox& box : kExtensionBoxes) {
        const std::string text = extension_text(settings, box.setting);
        if (box.check)
            find(box.control)->Value = text == "1" ? 1 : 0;
        else
            find(box.control)->Text = text;
    }
}

// A box that holds no value for its setting keeps the setting as it was,
// and says so in the words the file's own complaints use.
void frmSetup::save_extensions() {
    const auto file = home() / "tavora.ini";
    Extensions settings = read_extensions(file);
    for (const ExtensionBox& box : kExtensionBoxes) {
        const Control& control = *find(box.control);
        const std::string value = box.check ? (control.Value == 1 ? "1" : "0") : control.Text;
        if (!set_extension(settings, box.setting, value)) {
            services_.dialogs.MsgBox("tavora.ini: \"" + value + "\" is no value for " +
                                         box.setting + "; it stays " +
                                         extension_text(settings, box.setting),
                                     Buttons::OKOnly, "Tavora Settings");
        }
    }
    write_extensions(settings, file);
    if (Extensions_Saved) Extensions_Saved(settings);
}

}  // namespace tavora
