#pragma once

#include <string>

#include "core/forms/form.h"
#include "core/services.h"
#include "core/station.h"
#include "store/data_control.h"

namespace tavora {

// "Advanced Scheduler": re-ranks the charts by hand. "Set" marks every
// charted row with the place-holder 200, the operator types the new places
// in the grid, and "Final" clears the rows left at 200.
class Advschedule : public Form {
  public:
    static constexpr int kPlaceHolder = 200;

    Advschedule(Station& station, Services& services, LibraryPool& pool);

    DataControl datPrimaryRS;  // Recordings1 in the view of its Tag

    void Form_Load();
    // The Top 40 view.
    void Set_n_Sort();
    // 0 to 2 "Set" a chart, 3 to 5 "Final" it.
    void SetAll_Click(int index);
    // A click on a column head: 0 Top 40, 1 HOT AC, 2 Dance, 3 Title, 4 Artist.
    void DataGrid1_HeadClick(int column);
    // A place typed into the grid on the current row: column 0 to 2 are the
    // three charts.
    void DataGrid1_Edit(int column, const std::string& text);
    void cmdAdd_Click();
    void cmdDelete_Click();
    void cmdRefresh_Click();
    void cmdUpdate_Click();

    Control& cmdAdd = add("cmdAdd");
    Control& cmdDelete = add("cmdDelete");
    Control& cmdRefresh = add("cmdRefresh");
    Control& cmdUpdate = add("cmdUpdate");
    Control& cmdClose = add("cmdClose");
    Control& SetAll(int index) { return *find("SetAll", index); }
    // The grid's columns, 0 to 4, captioned with their fields; a head
    // click is "HeadClick", a place typed in is the column's Text and
    // "Change".
    Control& DataGrid1(int column) { return *find("DataGrid1", column); }

  private:
    // Runs the view of the Tag, falling back to titles when it is empty.
    void view();

    Station& station_;
    Services& services_;
};

}  // namespace tavora
