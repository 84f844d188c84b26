#pragma once

#include <map>
#include <optional>
#include <string>

namespace tavora {

// The control API answers only the machine it is bound on: a loopback
// address, or the bound address itself when that isn't "any".
bool control_allowed(const std::string& remote, const std::string& bound);
// False when no token is set: no token, no control. Compared in constant
// time so the answer's timing tells nothing.
bool token_matches(const std::string& given, const std::string& token);

// The fields of a station manager's break order, as the control API takes
// them: times "HH:MM" or "HH:MM:SS" (24-hour), a date "YYYY-MM-DD" (today
// when left out), switches as true/false/1/0/yes/no.
struct BreakOrder {
    std::string start;  // "hh:mm:ss"
    std::string end;
    std::string date;  // "yyyy-mm-dd", or empty for the station's today
    bool exit1 = false, exit2 = false;
    bool block_party = false;
    int block_songs = 0;
    bool cd = false, skip = false, play = false;
};
// The order, or the words that say which field is wrong.
struct BreakParse {
    std::optional<BreakOrder> order;
    std::string error;
};
BreakParse parse_break_order(const std::multimap<std::string, std::string>& fields);

// The 24 items of qxsm.ini for an order, one a line, labels included.
std::string break_order_file(const BreakOrder& order);

}  // namespace tavora
