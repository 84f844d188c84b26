#include "runtime/strings.h"
#include "selection/fields.h"
#include "selection/selection.h"

namespace tavora {

// Continues the running block on the artist-sorted query: walks to the
// block's artist and offers its rows, unless the artist had a block among
// the last five or the title was played lately.
void Selection::Block_Party_Scan() {
    Recordset& rows = Data3.Recordset();
    if (rows.IsEOF() || offer_cd_track()) return;
    BP_Full = 0;
    // No block has begun: the rotation gives the song that begins one.
    if (BP_Artist == "a") {
        BP_Done = 1;
        return;
    }
    if (Qry_Empty != 0) return;
    Scan_Pos = 0;
    rows.MoveLast();
    rows.MoveFirst();
    Scan_Count = rows.RecordCount();
    forget_cd_pos();
    BP_Scan = 0;
    if (hooks.trace) trace("block party scan for \"" + BP_Artist + "\"");
    const auto chars = static_cast<std::size_t>(std::max(0, s_.BP_Chars));
    while (Scan_Pos < Scan_Count && Sel_Found == 0) {
        rows.MoveLast();
        rows.MoveFirst();
        rows.Move(Scan_Pos);
        const std::string artist = Left(field(rows, rec::Artist).text(), chars);
        if (artist != BP_Artist && BP_Scan == 1) {
            BP_Scan = 2;  // the artist's rows are behind us
            Scan_Pos = Scan_Count;
        }
        if (artist == BP_Artist) {
            if (BP_Scan == 0) BP_Scan = 1;
            const std::string title = Left(field(rows, rec::Title).text(), chars);
            for (int i = 0; i < 5; ++i) {
                if (BP_Artists[i] == artist) {
                    Scan_Pos = Scan_Count;
                    BP_Scan = 2;
                }
                if (BP_Titles[i] == title) BP_Scan = 3;
            }
            if (BP_Scan == 2) {
                trace_row("block party: the artist had a block among the last five");
            } else if (BP_Scan == 3) {
                trace_row("block party: title played lately");
                BP_Scan = 1;
            } else {
                ApplyRules();
            }
        }
        ++Scan_Pos;
    }
}

void Selection::Push_Artist() {
    BP_Count = 0;
    for (int i = 0; i < 4; ++i)
        BP_Artists[i] = BP_Artists[i + 1];
    BP_Artists[4] = BP_Artist;
    BP_Artist = Left(field(Data3.Recordset(), rec::Artist).text(),
                     static_cast<std::size_t>(std::max(0, s_.BP_Chars)));
}

void Selection::Push_Title() {
    for (int i = 0; i < 4; ++i)
        BP_Titles[i] = BP_Titles[i + 1];
    BP_Titles[4] = Left(field(Data3.Recordset(), rec::Title).text(),
                        static_cast<std::size_t>(std::max(0, s_.BP_Chars)));
}

}  // namespace tavora
