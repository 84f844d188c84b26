#include <algorithm>
#include <string>

#include "selection/frm_schedule1.h"
#include "store/library.h"
#include "store/statement.h"

namespace tavora {

namespace {

// Whether a row is active now: one of its three categories is in the list,
// or, when a running entry activates all charts, it is on a chart. The
// columns ignore case for the screens; here "rock" is not "Rock". ?1 to ?n
// are the active categories, ?(n+1) the all-charts switch.
std::string active_expression(int categories) {
    std::string list;
    for (int i = 1; i <= categories; ++i) {
        if (i > 1) list += ",";
        list += "?" + std::to_string(i);
    }
    const std::string charts = "?" + std::to_string(categories + 1);
    std::string in_list = "0";
    if (categories > 0) {
        in_list = "[Category] COLLATE BINARY IN (" + list + ") OR [Speed] COLLATE BINARY IN (" +
                  list + ") OR [Type] COLLATE BINARY IN (" + list + ")";
    }
    return "(CASE WHEN " + in_list + " OR (" + charts +
           " AND ([T40] > 0 OR [C40] > 0 OR [D40] > 0 OR [AM40] > 0)) THEN 1 ELSE 0 END)";
}

}  // namespace

// Every row of the library ends as the walk of the rule would leave it:
// 1 when active, else 0. Rows that already hold their value are not
// written, so a check that changes nothing writes nothing.
void frmSchedule1::rewrite_schedule_select() {
    const std::shared_ptr<Library> file = library();
    if (file == nullptr) return;
    const int categories = std::clamp(Active_Next, 0, 100);
    const std::string active = active_expression(categories);
    Statement update =
        file->connection().prepare("UPDATE Recordings1 SET [Schedule Select] = " + active +
                                   " WHERE [Schedule Select] IS NOT " + active);
    for (int i = 1; i <= categories; ++i)
        update.bind_text(i, Active_Cats[i]);
    update.bind_int64(categories + 1, All_Charts == 1 ? 1 : 0);
    Transaction batch = file->transaction();
    if (update.step() == Statement::Step::Done && file->connection().changes() > 0)
        file->note_write({"Schedule Select"});
    batch.commit();
}

}  // namespace tavora
