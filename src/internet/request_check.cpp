#include "internet/mailfrm.h"
#include "platform/clock.h"
#include "platform/file_ops.h"
#include "platform/path_map.h"
#include "runtime/convert.h"
#include "runtime/date_text.h"
#include "runtime/strings.h"
#include "runtime/text_file.h"
#include "store/transaction.h"

namespace tavora {

namespace {

constexpr const char* kNewReq = "c:\\tavora\\newreq.tqf";
constexpr const char* kReqClear = "c:\\tavora\\reqclear.tqf";
// The memory of duplicates: a quarter of an hour, as the days it is kept in.
constexpr double kDuplicateSpan = 0.0104166;
// Items past this one don't count against the five a check, so that a list
// near its reset drains at once.
constexpr long kListLimit = 255;
constexpr int kPerCheck = 5;

bool write_one_line(const std::filesystem::path& file, const std::string& line) {
    TextWriter out(file, TextWriter::Mode::Create);
    out.write_line(line);
    return out.close();
}

}  // namespace

void Mailfrm::Check_File() {
    if (!run_check()) {
        Label4.Caption = "ERROR: Problem with data file - Correcting next load";
    }
    IIS_MinLeft = IIS_Minutes;
}

void Mailfrm::reset_list_on_clear() {
    const auto clear_file = native(kReqClear);
    if (IIS_Line <= kListLimit || !files::Exists(clear_file)) return;
    TextReader in(clear_file);
    const ReadResult answer = in.read_item();
    in.close();
    if (!answer.ok() || answer.text != "clear") return;
    files::Kill(native(kNewReq));
    files::Kill(clear_file);
    write_one_line(native(kNewReq), "None");
    IIS_Line = 0;
    Label12.Caption = "0";
}

bool Mailfrm::run_check() {
    IIS_Line = CInt(Val(Label12.Caption));
    reset_list_on_clear();
    IIS_File = kNewReq;
    Label4.Caption = "CHECKING DIRECT Request NOW, Standby";

    TextReader in(native(kNewReq));
    if (!in.is_open()) return false;
    if (!DataReq.Refresh()) return false;
    titles_built_ = false;
    // One commit for the whole check; what a failed item leaves taken stays.
    Transaction batch = DataReq.Recordset().library()->transaction();
    long counter = 0;
    int passes = 0;
    bool ok = true;
    while (ok && !in.at_end()) {
        const ReadResult item = in.read_item();
        if (item.status == ReadResult::Status::EndOfFile) break;
        if (!item.ok()) {
            ok = false;
            break;
        }
        ++counter;
        // Fillers are counted and passed over.
        const bool wanted = Len(item.text) > 1 && tavora::Left(item.text, 4) != "None" &&
                            tavora::Left(item.text, 4) != "none";
        if (passes < kPerCheck && wanted && counter > IIS_Line) {
            ok = process_item(item.text, counter, passes);
        }
    }
    batch.commit();
    if (!ok) return false;

    Label4.Caption = "Complete with Upload";
    in.close();
    if (Val(Label12.Caption) > kListLimit) write_one_line(native(kReqClear), "need");
    IIS_Saved = CInt(Val(Label12.Caption));
    TQXi_Sav();
    return true;
}

long Mailfrm::find_title(const std::string& title) {
    Recordset& r = DataReq.Recordset();
    if (!titles_built_) {
        titles_.clear();
        long position = 0;
        for (r.MoveFirst(); !r.IsEOF(); r.MoveNext(), ++position) {
            const Value field = r.Fields("Title");
            if (field.is_null()) continue;
            const std::string text = field.text();
            // The rule compares first characters before the trimmed
            // titles, so a title with a leading blank never matches.
            if (tavora::Left(text, 1) != tavora::Left(Trim(text), 1)) continue;
            titles_.emplace(Trim(text), position);
        }
        titles_built_ = true;
    }
    const auto found = titles_.find(title);
    return found == titles_.end() ? -1 : found->second;
}

void Mailfrm::shift_results() {
    for (int number = 9; number > 5; --number)
        Result(number).Caption = Result(number - 1).Caption;
}

bool Mailfrm::process_item(const std::string& item, long counter, int& passes) {
    Station& s = station_;
    if (counter <= kListLimit) ++passes;
    IIS_Line = static_cast<int>(counter);
    IIS_Saved = static_cast<int>(counter);
    Label12.Caption = std::to_string(counter);
    IIS_File = kNewReq;
    std::string title = Trim(item);
    Label4.Caption = "Processing: " + title;

    const double now = services_.clock.Now();
    if (now - s.IIS_LastTime > kDuplicateSpan) {
        for (int i = 1; i <= 5; ++i)
            IIS_Recent[i] = "None";
    }
    for (int i = 1; i <= 5; ++i) {
        if (IIS_Recent[i] == title) {
            title = "Duplicate";
            Label4.Caption += "-- DUPLICATE";
            Report.Text += "\r\n" + Label4.Caption;
            List1.AddItem(Label4.Caption);
        }
    }

    long row = -1;
    if (title == "Duplicate") {
        // A duplicate gives its place of the five back, unless it is the
        // first of the pass.
        if (DataReq.Recordset().RecordCount() > 0 && passes > 1) --passes;
    } else {
        row = find_title(title);
    }
    shift_results();
    if (row < 0) {
        Result(5).Caption = title + " - NOT FOUND - " + date_text(now);
        Report.Text += "\r\n" + Result(5).Caption;
        List1.AddItem(Result(5).Caption);
        return true;
    }
    Label14.Caption = number_text(Val(Label14.Caption) + 1);
    for (int i = 5; i > 1; --i)
        IIS_Recent[i] = IIS_Recent[i - 1];
    IIS_Recent[1] = title;
    Result(5).Caption = title + " - " + date_text(now);
    s.IIS_LastTime = now;
    return take_request(row, now);
}

bool Mailfrm::take_request(long row, double now) {
    Station& s = station_;
    Recordset& r = DataReq.Recordset();
    r.MoveFirst();
    if (row > 0) r.Move(row);
    if (!r.Edit()) return false;
    auto add = [&r](const char* name, double amount) {
        r.SetField(name, Value(r.Fields(name).number() + amount));
    };
    if (LCase(Trim(r.Fields("Title").text())) == "zhot request") Hot_Left = 6;
    if (Hot_Left < 1) {
        add("Sel", 1);
        if (r.Fields("Sel").number() < 2) r.SetField("AccessDate", Value::date(now));
    } else {
        r.SetField("Sel", Value(50));
        --Hot_Left;
        Result(5).Caption += "HOT REQUEST";
    }
    for (const char* name : {"RTW", "Request This Month", "Request AllTime"})
        add(name, 1);
    if (s.PL_Build == 10) {
        if (r.Fields("Sel").number() > 1) r.SetField("Sel", Value(1));
        for (const char* name : {"Sel", "RTW", "Request This Month", "Request AllTime"})
            add(name, s.PL_Next - 1);
        ++s.PL_Next;
        r.Update();
    }
    // In list building the edit was written above and this second write
    // fails, which ends the check by its error path with the item taken.
    if (!r.Update()) return false;
    List1.AddItem(RTrim(r.Fields("Artist").text()) + " - " + Result(5).Caption);
    return true;
}

}  // namespace tavora
