#include "selection/query_screen.h"

#include <string_view>

#include "store/recordset.h"

namespace tavora {

namespace {

struct Sort {
    std::string_view tag;
    const char* source;
};

constexpr Sort kSorts[] = {
    {"RequestThisMonth", "RequestThisMonth"},
    {"Special", "Special Sort"},
    {"Charts", "Top40"},
    {"Most Plays", "MOST PLAYED"},
    {"Categories", "Active1"},
    {"FName", "FName"},
    {"MaxPlys", "MaxPlys"},
    {"LastPlay", "LastPlay"},
    {"Artist Sort", "Artist Sort"},
    {"Recordings1", "Recordings1"},
    {"Title Sort", "Title Sort"},
};

void open_sort(DataControl& data1, const std::shared_ptr<Library>& library) {
    for (const Sort& sort : kSorts) {
        if (sort.tag != data1.Tag) continue;
        Recordset rows = OpenRecordset(library, sort.source);
        rows.Requery();
        data1.SetRecordset(std::move(rows));
        data1.UpdateControls();
        return;
    }
}

}  // namespace

void GetQryScrn(DataControl& data1, const std::shared_ptr<Library>& library, Form& window) {
    window.MousePointer = 11;
    open_sort(data1, library);
    if (data1.Recordset().RecordCount() == 0) {
        data1.Tag = "Title Sort";
        open_sort(data1, library);
    }
    Recordset& rows = data1.Recordset();
    rows.MoveLast();
    rows.MoveFirst();
    window.MousePointer = 0;
}

}  // namespace tavora
