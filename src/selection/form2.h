#pragma once

#include <functional>

#include "core/forms/form.h"
#include "core/services.h"
#include "core/station.h"
#include "store/data_control.h"

namespace tavora {

// "Category Override Setup": forces the marked schedule entries to run for
// a chosen time, whatever their own rules say.
class Form2 : public Form {
  public:
    static constexpr int kButtons = 30;
    static constexpr long kGreen = 65280;

    Form2(Station& station, Services& services, LibraryPool& pool);

    DataControl DataCat;             // the Schedule table
    double Over_Len = 5.0 / 1440.0;  // how long an override holds

    void Form_Load();
    // `Command2`: closes the window.
    void Form_Unload();
    // Told when the window closes; the station turns its menu entry back on.
    std::function<void()> Unloaded;
    // Redraws one button per schedule entry, green when it is marked.
    void Cat_Chk();
    void CmdCat_Click(int index);
    void Combo1_Click();
    void Command1_Click();

    Control& Combo1 = add_list("Combo1");
    Control& Text1 = add_text("Text1");
    Control& Command1 = add("Command1");
    Control& Command2 = add("Command2");
    Control& CmdCat(int index) { return *find("CmdCat", index); }

  private:
    void show_state();

    Station& station_;
    Services& services_;
    long normal_colour_ = 0xC0C0C0;
};

}  // namespace tavora
