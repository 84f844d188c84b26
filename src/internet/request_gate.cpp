#include "internet/request_gate.h"

#include "internet/web_text.h"

namespace tavora {

namespace {

// Past this many remembered addresses a flood is trimmed to what still counts.
constexpr std::size_t kRememberAtMost = 10'000;

GateAnswer answer(GateAnswer::Result result, std::string title, std::string message) {
    return GateAnswer{result, std::move(title), std::move(message)};
}

}  // namespace

const char* result_name(GateAnswer::Result result) {
    switch (result) {
        case GateAnswer::Result::Requested:
            return "requested";
        case GateAnswer::Result::Empty:
            return "empty";
        case GateAnswer::Result::Off:
            return "off";
        case GateAnswer::Result::Unknown:
            return "unknown";
        case GateAnswer::Result::Limit:
            return "limit";
        case GateAnswer::Result::Recent:
            return "recent";
        case GateAnswer::Result::Unwritable:
            return "unwritable";
    }
    return "empty";
}

std::string exchange_item(const std::string& title) {
    if (title.find(',') == std::string::npos && title.find('"') == std::string::npos) return title;
    if (title.find('"') != std::string::npos) return {};
    return "\"" + title + "\"";
}

GateAnswer RequestGate::request(const std::string& address, const std::string& raw_title) {
    using R = GateAnswer::Result;
    std::string title = clean_web_text(raw_title);
    if (title.size() < 2) return answer(R::Empty, title, "Pick a song to request.");
    if (!ports_.requests_on || !ports_.requests_on())
        return answer(R::Off, title, "Requests from the web are off at the station right now.");
    if (!ports_.known || !ports_.known(title))
        return answer(R::Unknown, title, "That title is not in our library.");
    const std::string item = exchange_item(title);
    if (item.empty())
        return answer(R::Unwritable, title, "That title can't be requested from the web.");

    std::lock_guard lock(mutex_);
    const double now = ports_.seconds();
    forget_old(now);
    auto& times = by_address_[address];
    while (!times.empty() && now - times.front() >= kHour)
        times.pop_front();
    if (static_cast<int>(times.size()) >= per_hour_) {
        return answer(R::Limit, title,
                      "You have made " + std::to_string(per_hour_) +
                          " requests in the last hour. Please try again later.");
    }
    if (const auto seen = by_title_.find(title);
        seen != by_title_.end() && now - seen->second < kSameTitle) {
        return answer(R::Recent, title,
                      "Someone requested that song a moment ago: it is already on its way.");
    }
    if (!ports_.append || !ports_.append(item))
        return answer(R::Unwritable, title, "The station could not take the request. Try again.");
    times.push_back(now);
    by_title_[title] = now;
    return answer(R::Requested, title, "Requested! Your song joins the line-up in a while.");
}

void RequestGate::forget_old(double now) {
    if (by_address_.size() + by_title_.size() < kRememberAtMost) return;
    std::erase_if(by_address_, [now](const auto& entry) {
        return entry.second.empty() || now - entry.second.back() >= kHour;
    });
    std::erase_if(by_title_, [now](const auto& entry) { return now - entry.second >= kSameTitle; });
}

}  // namespace tavora
