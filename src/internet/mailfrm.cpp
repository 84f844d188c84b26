#include "internet/mailfrm.h"

#include <optional>
#include <string>

#include "runtime/convert.h"
#include "runtime/text_file.h"

namespace tavora {

namespace {

std::string bool_text(bool on) {
    return on ? "True" : "False";
}

std::optional<bool> read_switch(TextReader& in) {
    const ReadResult item = in.read_item();
    return item.ok() ? parse_boolean(item.text) : std::nullopt;
}

}  // namespace

Mailfrm::Mailfrm(Station& station) : Form("Mailfrm"), station_(station) {
    Caption = "Tavora Internet Request Interface";
    for (int number = 5; number <= 9; ++number)
        add("Label" + std::to_string(number)).Caption = "None";
    add("Label12").Caption = "0";
    add("Label14").Caption = "0";
}

bool Mailfrm::TQXi_Sav(const std::filesystem::path& file) const {
    TextWriter out(file, TextWriter::Mode::Create);
    out.write_line(bool_text(station_.IIS_On));
    out.write_line(bool_text(station_.IIS_AutoLoad));
    out.write_line(std::to_string(station_.IIS_Minutes));
    out.write_line(station_.IIS_Name);
    out.write_line(station_.IIS_File);
    for (int number = 5; number <= 9; ++number) {
        out.write_line(find("Label" + std::to_string(number))->Caption);
    }
    out.write_line(std::to_string(station_.IIS_Line));
    out.write_line(std::to_string(station_.IIS_Saved));
    out.write_line(find("Label14")->Caption);
    return out.close();
}

bool write_default_tqxiis(const std::filesystem::path& file) {
    TextWriter out(file, TextWriter::Mode::Create);
    for (const char* line : {"False", "False", "10", "TQXMS Direct", "Mymail.mbx", "None", "None",
                             "None", "None", "None", "0"}) {
        out.write_line(line);
    }
    return out.close();
}

void read_tqxiis_switches(Station& station, const std::filesystem::path& file) {
    TextReader in(file);
    if (!in.is_open()) return;
    if (auto on = read_switch(in)) station.IIS_On = *on;
    if (auto auto_load = read_switch(in)) station.IIS_AutoLoad = *auto_load;
}

}  // namespace tavora
