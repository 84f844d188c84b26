#pragma once

#include <memory>
#include <string>

#include "core/station.h"

namespace tavora {

class DataControl;
class Library;

// The calendar work that runs at the head of every schedule check, on the
// first row of Setup: a new day rebuilds the log name, the block party and
// the Top Request ranking; a week over seven days shifts the four weekly
// request counters; a month over thirty days only moves its date. A station
// that was off catches up once.
//
// `setup` is a data control on the settings file's Setup table. Returns
// whether the present time is past `Time For New Day`, from which the
// category weights count. Library work that can't be written (the file is
// locked or read-only) leaves the library as it was and its date unsaved,
// so the next check tries again; the first reason goes to `failure`.
bool Roll_Over(Station& station, double now, DataControl& setup,
               const std::shared_ptr<Library>& library, std::string& failure);

// The Top Request ranking alone, in one transaction: the first 75 rows of
// CalcReq without a Source get their place, later ones 0; a special row uses
// up its place. Returns why it wasn't written, empty when it was.
std::string Rank_Requests(const std::shared_ptr<Library>& library);

// The weekly shift of every row alone, in one statement. Returns why it
// wasn't written, empty when it was.
std::string Shift_Weeks(const std::shared_ptr<Library>& library);

}  // namespace tavora
