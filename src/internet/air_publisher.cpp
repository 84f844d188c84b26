#include "internet/air_publisher.h"

#include <algorithm>

#include "runtime/date_text.h"

namespace tavora {

AirPublisher::AirPublisher(Station& station, Playback& playback, Request& request,
                           const Clock& clock, AirBoard& board, Lookup lookup)
    : s_(station),
      playback_(playback),
      request_(request),
      clock_(clock),
      board_(board),
      lookup_(std::move(lookup)) {}

AirItem AirPublisher::item_of(int slot) {
    AirItem item;
    item.slot = slot;
    item.recid = s_.Slot_RecID[slot];
    item.slot_title = s_.Slot_Title[slot];
    item.length_s = s_.Slot_Length[slot];
    if (lookup_ && item.recid != 0) {
        auto known = names_.find(item.recid);
        // Cached by recid: a slot is asked for every second while it waits.
        if (known == names_.end()) known = names_.emplace(item.recid, lookup_(item.recid)).first;
        item.title = known->second.first;
        item.artist = known->second.second;
    }
    if (item.title.empty()) item.title = item.slot_title;
    return item;
}

std::string AirPublisher::mode() {
    if (request_.Command7.Caption == "Resume") return "break";
    if (!playback_.TimerViewer().Enabled()) {
        for (int n = 1; n <= kPlayers; ++n) {
            if (playback_.Players(n).PlayState() == MediaPlayer::kPaused) return "paused";
        }
        return "idle";
    }
    return "running";
}

void AirPublisher::aired(int slot, double when) {
    AirItem item = item_of(slot);
    item.start = event_time(when);
    last_.push_front(std::move(item));
    if (last_.size() > kHistory + 1) last_.pop_back();
    ++airs_;
    publish();
}

void AirPublisher::publish() {
    AirSnapshot snap;
    snap.mode = mode();
    snap.time = event_time(clock_.Now());
    snap.status = request_.Label15.Caption;
    snap.requests_on = s_.IIS_On;
    snap.airs = airs_;
    if (!last_.empty()) {
        const AirItem& newest = last_.front();
        MediaPlayer& player = playback_.Players(newest.slot == kSeventhSlot ? 7 : newest.slot);
        const int state = player.PlayState();
        snap.on_air = state == MediaPlayer::kPlaying || state == MediaPlayer::kPaused;
        if (snap.on_air) {
            snap.now = newest;
            const double length = player.Duration() > 0 ? player.Duration() : newest.length_s;
            snap.now.length_s = length;
            snap.now.left_s = std::max(0.0, length - player.CurrentPosition());
        }
        snap.last.assign(last_.begin() + (snap.on_air ? 1 : 0), last_.end());
        if (snap.last.size() > kHistory) snap.last.resize(kHistory);
    }
    const int from =
        snap.on_air && snap.now.slot != kSeventhSlot ? snap.now.slot + 1 : s_.Ply_Now + 1;
    for (int slot = std::max(1, from); slot <= 12; ++slot) {
        if (!s_.Slot_Title[slot].empty()) snap.next.push_back(item_of(slot));
    }
    board_.publish(std::move(snap));
}

}  // namespace tavora
