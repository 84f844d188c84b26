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
    s_.BP_Full = 0;
    // No block has begun: the rotation gives the song that begins one.
    if (s_.BP_Artist == "a") {
        s_.BP_Done = 1;
        return;
    }
    if (s_.Qry_Empty != 0) return;
    s_.Scan_Pos = 0;
    rows.MoveLast();
    rows.MoveFirst();
    s_.Scan_Count = rows.RecordCount();
    s_.CD_Pos = 0;
    s_.BP_Scan = 0;
    if (hooks.trace) trace("block party scan for \"" + s_.BP_Artist + "\"");
    const auto chars = static_cast<std::size_t>(std::max(0, s_.BP_Chars));
    while (s_.Scan_Pos < s_.Scan_Count && s_.Sel_Found == 0) {
        rows.MoveLast();
        rows.MoveFirst();
        rows.Move(s_.Scan_Pos);
        const std::string artist = Left(field(rows, rec::Artist).text(), chars);
        if (artist != s_.BP_Artist && s_.BP_Scan == 1) {
            s_.BP_Scan = 2;  // the artist's rows are behind us
            s_.Scan_Pos = s_.Scan_Count;
        }
        if (artist == s_.BP_Artist) {
            if (s_.BP_Scan == 0) s_.BP_Scan = 1;
            const std::string title = Left(field(rows, rec::Title).text(), chars);
            for (int i = 0; i < 5; ++i) {
                if (s_.BP_Artists[i] == artist) {
                    s_.Scan_Pos = s_.Scan_Count;
                    s_.BP_Scan = 2;
                }
                if (s_.BP_Titles[i] == title) s_.BP_Scan = 3;
            }
            if (s_.BP_Scan == 2) {
                trace_row("block party: the artist had a block among the last five");
            } else if (s_.BP_Scan == 3) {
                trace_row("block party: title played lately");
                s_.BP_Scan = 1;
            } else {
                ApplyRules();
            }
        }
        ++s_.Scan_Pos;
    }
}

void Selection::Push_Artist() {
    s_.BP_Count = 0;
    for (int i = 0; i < 4; ++i)
        s_.BP_Artists[i] = s_.BP_Artists[i + 1];
    s_.BP_Artists[4] = s_.BP_Artist;
    s_.BP_Artist = Left(field(Data3.Recordset(), rec::Artist).text(),
                        static_cast<std::size_t>(std::max(0, s_.BP_Chars)));
}

void Selection::Push_Title() {
    for (int i = 0; i < 4; ++i)
        s_.BP_Titles[i] = s_.BP_Titles[i + 1];
    s_.BP_Titles[4] = Left(field(Data3.Recordset(), rec::Title).text(),
                           static_cast<std::size_t>(std::max(0, s_.BP_Chars)));
}

}  // namespace tavora
