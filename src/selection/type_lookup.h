#pragma once

#include <string>

#include "core/forms/form.h"
#include "core/services.h"
#include "core/station.h"
#include "store/data_control.h"

namespace tavora {

// "Type / Genre Lookup": the master list of categories and the programming
// weights that limit how often each may be active in a cycle.
class frmTypeLookup : public Form {
  public:
    frmTypeLookup(Station& station, Services& services, LibraryPool& pool);

    DataControl datPrimaryRS;  // the categories, by name
    DataControl Data1;         // the weights as shown
    DataControl Data2;         // the weights as the schedule and the rules use them

    // Points the data controls at the active library, brings the weights in
    // step with the categories and shows the first category.
    void Form_Initialize();
    void Form_Unload() { sync_weights(); }
    // A move to another category gives it a weight row if it has none, and
    // shows it with its weight.
    void datPrimaryRS_Reposition();
    void Chk_TypeLk();
    void cmdAdd_Click();
    // Writes the typed category and its weight and count.
    void cmdUpdate_Click();
    void cmdDelete_Click();

    Control& cmdAdd = add("cmdAdd");
    Control& cmdUpdate = add("cmdUpdate");
    Control& cmdDelete = add("cmdDelete");
    Control& txtType = add_text("txtType");
    Control& txtWeight = add_text("txtWeight");  // ValidFiles of the category
    Control& txtCount = add_text("txtCount");    // ExcludeFiles of the category
    Control& Label6 = add("Label6");
    Control& Label1 = add("Label1");  // the prompt for a new category
    // The weight monitor: what the last schedule check activated and what
    // it left out.
    Control& Label3 = add("Label3");
    Control& Label5 = add("Label5");

  private:
    void sync_weights();
    void add_weight_if_missing(const Value& type);
    // The weight row of a category, current in Data1; false when it has none.
    bool find_weight(const std::string& category);
    bool is_master();
    // The reason typed values can't be stored, or empty.
    std::string check_typed(const std::string& type);
    void write_weight(const std::string& old_name, const std::string& name);
    void move(int button);

    Station& station_;
    Services& services_;
    bool adding_ = false;  // a new category waits for its Update
};

}  // namespace tavora
