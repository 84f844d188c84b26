#pragma once

#include <string>

#include "core/services.h"
#include "core/station.h"

namespace tavora {

// Today's play log: "C:\tavora\qxl" month day ".log", no leading zeros and
// no year, so a date of last year shares this year's file. Lines are only
// ever appended.
std::string log_name_for(double date);

// The play log's lines; `now` gives the system time as text.
std::string complete_line(double now, int player, const std::string& title);
// The sixth song handing over to the seventh player or the CD.
std::string set_end_line(double now, const std::string& title);
// The CD handing the air back to the bank; `text` is "title - artist - Tavora".
std::string cd_line(double now, const std::string& text);
std::string missing_line(double now, const std::string& path, const std::string& title);

// `Log_One`: appends `Log_Line` to `Log_Name` and sets `Log_Due` to 0. A
// failed write is passed over: the log is plain and local.
void Log_One(Station& station, const Services& services);

// The "Log Viewer" menu: pick a log file, show it in the text viewer.
void Log_View(const Services& services);

}  // namespace tavora
