#include "internet/air_board.h"

#include <cmath>
#include <cstdio>

#include "internet/web_text.h"

namespace tavora {

void AirBoard::publish(AirSnapshot snapshot) {
    auto next = std::make_shared<const AirSnapshot>(std::move(snapshot));
    {
        std::lock_guard lock(mutex_);
        current_ = std::move(next);
    }
    changed_.notify_all();
}

std::shared_ptr<const AirSnapshot> AirBoard::current() const {
    std::lock_guard lock(mutex_);
    return current_;
}

std::shared_ptr<const AirSnapshot> AirBoard::wait_past(std::uint64_t seen,
                                                       std::chrono::milliseconds timeout) const {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, timeout, [&] { return closed_ || current_->airs > seen; });
    return current_;
}

void AirBoard::close() {
    {
        std::lock_guard lock(mutex_);
        closed_ = true;
    }
    changed_.notify_all();
}

bool AirBoard::closed() const {
    std::lock_guard lock(mutex_);
    return closed_;
}

namespace {

std::string seconds_text(double seconds) {
    char text[32];
    std::snprintf(text, sizeof text, "%.1f", std::isfinite(seconds) ? seconds : 0.0);
    return text;
}

std::string item_json(const AirItem& item) {
    return "{\"slot\":" + std::to_string(item.slot) + ",\"recid\":" + std::to_string(item.recid) +
           ",\"title\":" + json_string(item.title) + ",\"artist\":" + json_string(item.artist) +
           ",\"slot_title\":" + json_string(item.slot_title) +
           ",\"start\":" + (item.start.empty() ? "null" : json_string(item.start)) +
           ",\"length_s\":" + seconds_text(item.length_s) +
           ",\"left_s\":" + seconds_text(item.left_s) + "}";
}

std::string items_json(const std::vector<AirItem>& items) {
    std::string out = "[";
    for (const AirItem& item : items) {
        if (out.size() > 1) out += ",";
        out += item_json(item);
    }
    return out + "]";
}

}  // namespace

std::string now_playing_json(const AirSnapshot& s) {
    return "{\"mode\":" + json_string(s.mode) + ",\"time\":" + json_string(s.time) +
           ",\"now\":" + (s.on_air ? item_json(s.now) : std::string("null")) +
           ",\"next\":" + items_json(s.next) + ",\"last\":" + items_json(s.last) +
           ",\"status\":" + json_string(s.status) +
           ",\"requests\":" + (s.requests_on ? "true" : "false") +
           ",\"airs\":" + std::to_string(s.airs) + "}";
}

std::string air_event_json(const AirSnapshot& s) {
    return "{\"airs\":" + std::to_string(s.airs) + ",\"mode\":" + json_string(s.mode) +
           ",\"now\":" + (s.on_air ? item_json(s.now) : std::string("null")) + "}";
}

}  // namespace tavora
