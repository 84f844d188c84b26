#include "core/log/play_log.h"

#include "platform/dialogs.h"
#include "platform/launcher.h"
#include "platform/path_map.h"
#include "runtime/date_text.h"
#include "runtime/dates.h"
#include "runtime/text_file.h"

namespace tavora {

namespace {

std::string time_text(double now) {
    return Format(now, "long time");
}

}  // namespace

std::string log_name_for(double date) {
    return "C:\\tavora\\qxl" + std::to_string(Month(date)) + std::to_string(Day(date)) + ".log";
}

std::string complete_line(double now, int player, const std::string& title) {
    const std::string qx = player == 7 ? "- QX 7 > " : "- QX" + std::to_string(player) + " > ";
    return "Complete at:" + time_text(now) + qx + title;
}

std::string set_end_line(double now, const std::string& title) {
    return "Complete at:" + time_text(now) + "- QX 6 > " + title;
}

std::string cd_line(double now, const std::string& text) {
    return "Complete at:" + time_text(now) + "- CD > " + text;
}

std::string missing_line(double now, const std::string& path, const std::string& title) {
    return "ERROR FILE NOT FOUND >> " + time_text(now) + "  " + path + " " + title;
}

void Log_One(Station& station, const Services& services) {
    const PathMap::Result file = services.paths.ToNative(station.Log_Name);
    if (file.status == PathMap::Status::Mapped) {
        TextWriter out(file.path, TextWriter::Mode::Append);
        out.write_line(station.Log_Line);
        out.close();
    }
    station.Log_Due = 0;
}

void Log_View(const Services& services) {
    const std::string chosen =
        services.dialogs.OpenFile("Tavora Logfile Search", "TQX Log Files|*.log", "c:\\tavora");
    if (chosen.empty()) return;
    const PathMap::Result file = services.paths.ToNative(chosen);
    services.launcher.OpenTextFile(file.ok() ? file.path : chosen);
}

}  // namespace tavora
