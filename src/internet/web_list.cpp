#include "internet/web_list.h"

#include "platform/clock.h"
#include "platform/dialogs.h"
#include "platform/file_ops.h"
#include "platform/path_map.h"
#include "runtime/convert.h"
#include "runtime/strings.h"
#include "runtime/text_file.h"

namespace tavora {

namespace {

constexpr const char* kHeader = "Top40:INT,Position:INT,Symbol,FullName,Period,Group";
constexpr const char* kNote =
    "NOTE -- The System automatically performs this task between 12am and 1am each day if the "
    "Tavora is running";
constexpr const char* kPurpose =
    "This will create data for your web request pages (Published by the station manager).";

bool between(const Value& v, double low, double high) {
    return v >= Value(low) && v <= Value(high);
}

}  // namespace

WebList::WebList(Request& request, Station& station, const Services& services)
    : request_(request), station_(station), services_(services) {
    request_.wiz_it = [this] { wiz_it(); };
    request_.on_click("Command13", [this](int) { Command13_Click(); });
}

void WebList::Command13_Click() {
    services_.dialogs.MsgBox(std::string(kNote) + "\r\n" + kPurpose);
    wiz_it();
}

void WebList::WebR_Wiz_Click() {
    services_.dialogs.MsgBox(std::string(kPurpose) + "\r\n" + kNote);
    wiz_it();
}

void WebList::wiz_it() {
    const auto native = [this](const char* dos) {
        return std::filesystem::path(services_.paths.ToNative(dos).path);
    };
    request_.Command13.Visible = false;
    request_.MousePointer = 11;
    const auto head = native("c:\\tavora\\web\\tqxshdr.htm");
    if (!files::Exists(head)) {
        request_.MousePointer = 0;
        request_.Label15.Caption = "AutoWeb Update Aborted";
        request_.Command13.Visible = true;
        if (station_.Auto_PL == 0) return;
        services_.dialogs.MsgBox(
            "You must run the station manager while connected to the internet first");
        return;
    }
    files::Copy(head, native("c:\\tavora\\web\\cstats.htm"));
    request_.MousePointer = 0;
    const auto list = native("c:\\tavora\\web\\qxstat.txt");
    if (files::Exists(list)) files::Kill(list);
    TextWriter out(list, TextWriter::Mode::Append);
    out.write_line(kHeader);
    out.close();

    // Only the title sort writes; the other two sorts are passed over.
    for (int sort : {3, 7, 0}) {
        request_.BtnSrt_Click(sort);
        Web_List();
    }
    if (station_.Auto_PL != 0) {
        services_.dialogs.MsgBox(
            "Your Web Page list has Been Created! Tavora Music System Station Manager will "
            "automatically update in a few minutes");
    }
    request_.Command13.Visible = true;
}

void WebList::Web_List() {
    Request& q = request_;
    station_.Web_Run = 1;
    q.MousePointer = 11;
    if (LCase(q.datPrimaryRS.RecordSource) != "title sort") return;

    TextWriter out(services_.paths.ToNative("c:\\tavora\\web\\qxstat.txt").path,
                   TextWriter::Mode::Append);
    Recordset& r = q.datPrimaryRS.Recordset();
    const double now = services_.clock.Now();
    q.List_Pos = 0;
    for (q.List_Row = 1; q.List_Pos <= q.List_Last; ++q.List_Row) {
        q.Skip_Spec();
        if (q.List_Pos > q.List_Last) break;
        r.MoveFirst();
        if (q.List_Pos > 0) r.Move(q.List_Pos);
        if (r.IsEOF()) break;
        out.write_line(line_of(r, now));
        ++q.List_Pos;
    }
    out.close();
    q.MousePointer = 0;
    station_.Web_Run = 0;
    q.List_Row = 1;
    q.List_Pos = 1;
}

std::string WebList::line_of(Recordset& r, double now) const {
    std::string top = "0";
    const Value c40 = r.Fields("C40");
    const Value d40 = r.Fields("D40");
    const Value t40 = r.Fields("T40");
    if (between(c40, 1, 49)) top = number_text(c40.number() + 1000);
    if (between(d40, 1, 49)) top = number_text(d40.number() + 2000);
    if (between(t40, 1, 200)) top = number_text(t40.number());
    const Value am40 = r.Fields("AM40");
    const std::string position = am40 > Value(0) ? number_text(am40.number()) : "0";

    const Value created = r.Fields("CreationDate");
    const bool fresh = !created.is_null() && (now + 1) - (created.number() + 1) < 30;
    const Value category = r.Fields("Category");
    std::string period;
    std::string compare;
    if (category.is_null()) {
        period = fresh ? "NEW" : "Misc";
        compare = "Misc";
    } else {
        period = RTrim((fresh ? "NEW-" : "") + category.text());
        compare = Trim(category.text());
    }
    const Value type = r.Fields("Type");
    if (!type.is_null() && type.text() != compare) period += "-" + RTrim(type.text());
    const Value speed = r.Fields("Speed");
    if (!speed.is_null()) {
        const std::string s = RTrim(speed.text());
        if (s != compare && (type.is_null() || s != Trim(type.text()))) period += "-" + s;
    }
    // No field is quoted: a comma in a title goes out as it stands.
    return top + "," + position + "," + RTrim(r.Fields("Title").text()) + "," +
           RTrim(r.Fields("Artist").text()) + "," + period + ",FALSE";
}

}  // namespace tavora
