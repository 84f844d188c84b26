#pragma once

#include "core/forms/form.h"
#include "store/data_control.h"

namespace tavora {

// The program director: the record editor and its searches. Its data
// controls are the ones the rest of the system borrows: `Data1` for the
// editor, `Data3` for selection, `DataSearch` for searches.
class frmTavoraDb : public Form {
  public:
    explicit frmTavoraDb(LibraryPool& pool)
        : Form("frmTavoraDb"), Data1(pool), Data3(pool), DataSearch(pool) {
        Caption = "Program Director";
    }

    DataControl Data1;
    DataControl Data3;
    DataControl DataSearch;
};

}  // namespace tavora
