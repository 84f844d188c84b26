#include "broadcast/encoding/icecast_source.h"

#include <pthread.h>
#include <shout/shout.h>

#include <csignal>

#include <algorithm>
#include <chrono>

#include "broadcast/encoding/server_stats.h"

namespace tavora {

namespace {

// About twenty seconds of a fast stream: more than that waiting means the server is
// too slow, and the oldest goes.
constexpr std::size_t kMaxQueuedBytes = 1 << 19;
constexpr auto kListenerPoll = std::chrono::seconds(5);

shout_t* as_shout(void* p) {
    return static_cast<shout_t*>(p);
}

struct ShoutLibrary {
    ShoutLibrary() { shout_init(); }
};

}  // namespace

// Longer than a healthy server takes to close; a hung one is left behind.
constexpr auto kCloseWait = std::chrono::seconds(2);

IcecastSource::IcecastSource(StreamTarget target, std::string format, const Profile& profile,
                             EncoderLog log)
    : target_(std::move(target)),
      format_(std::move(format)),
      bitrate_(std::to_string(profile.bitrate_kbps)),
      rate_(std::to_string(profile.sample_rate)),
      channels_(std::to_string(profile.channels)),
      log_(std::move(log)) {
    static ShoutLibrary library;
}

std::shared_ptr<IcecastSource> IcecastSource::start(StreamTarget target, std::string format,
                                                    const Profile& profile, EncoderLog log) {
    std::shared_ptr<IcecastSource> source(
        new IcecastSource(std::move(target), std::move(format), profile, std::move(log)));
    source->thread_ = std::thread([self = source] {
        self->run();
        {
            std::lock_guard lock(self->mutex_);
            self->done_ = true;
        }
        self->wake_.notify_all();
    });
    return source;
}

void IcecastSource::close() {
    std::unique_lock lock(mutex_);
    if (!thread_.joinable()) return;
    quit_ = true;
    wake_.notify_all();
    if (wake_.wait_for(lock, kCloseWait, [this] { return done_; })) {
        lock.unlock();
        thread_.join();
        return;
    }
    thread_.detach();
    log_("stream: " + address() +
         " does not answer; its connection is left to end when the server does");
}

IcecastSource::~IcecastSource() {
    if (thread_.joinable()) thread_.join();
    if (shout_) {
        shout_close(as_shout(shout_));
        shout_free(as_shout(shout_));
    }
}

// Holds the lock while it logs, so that once `close` has returned no line
// reaches a log whose owner may be gone.
void IcecastSource::say(const std::string& line) {
    std::lock_guard lock(mutex_);
    if (!quit_) log_(line);
}

std::string IcecastSource::address() const {
    return "http://" + target_.host + ":" + std::to_string(target_.port) + target_.mount;
}

void IcecastSource::send(const std::uint8_t* data, std::size_t size) {
    {
        std::lock_guard lock(mutex_);
        if (!accepting_) return;
        queue_.emplace_back(data, data + size);
        queued_bytes_ += size;
        while (queued_bytes_ > kMaxQueuedBytes) {
            queued_bytes_ -= queue_.front().size();
            queue_.pop_front();
        }
    }
    wake_.notify_one();
}

void IcecastSource::restarted() {
    std::lock_guard lock(mutex_);
    queue_.clear();
    queued_bytes_ = 0;
    accepting_ = true;
}

void IcecastSource::set_title(const std::string& title) {
    {
        std::lock_guard lock(mutex_);
        title_ = title;
    }
    wake_.notify_one();
}

void IcecastSource::wait_ms(int ms) {
    std::unique_lock lock(mutex_);
    wake_.wait_for(lock, std::chrono::milliseconds(ms), [this] { return quit_; });
}

bool IcecastSource::connect_once(int attempt) {
    if (shout_ == nullptr) shout_ = shout_new();
    shout_t* s = as_shout(shout_);
    shout_set_host(s, target_.host.c_str());
    shout_set_port(s, static_cast<unsigned short>(target_.port));
    shout_set_mount(s, target_.mount.c_str());
    shout_set_user(s, target_.user.c_str());
    shout_set_password(s, target_.password.c_str());
    shout_set_protocol(s, SHOUT_PROTOCOL_HTTP);
    shout_set_content_format(s, format_ == "mp3" ? SHOUT_FORMAT_MP3 : SHOUT_FORMAT_OGG,
                             SHOUT_USAGE_AUDIO, nullptr);
    shout_set_meta(s, SHOUT_META_NAME, target_.name.c_str());
    shout_set_meta(s, SHOUT_META_GENRE, target_.genre.c_str());
    shout_set_public(s, target_.is_public ? 1 : 0);
    shout_set_audio_info(s, SHOUT_AI_BITRATE, bitrate_.c_str());
    shout_set_audio_info(s, SHOUT_AI_SAMPLERATE, rate_.c_str());
    shout_set_audio_info(s, SHOUT_AI_CHANNELS, channels_.c_str());
    const int result = shout_open(s);
    if (result == SHOUTERR_SUCCESS || result == SHOUTERR_CONNECTED) {
        say("stream: connected to " + address() + " (attempt " + std::to_string(attempt) + ")");
        return true;
    }
    const std::string why = result == SHOUTERR_NOLOGIN
                                ? "the server refused the login of user \"" + target_.user + "\""
                                : std::string(shout_get_error(s));
    say("stream: attempt " + std::to_string(attempt) + " to reach " + address() +
        " failed: " + why);
    shout_close(s);
    return false;
}

void IcecastSource::send_title() {
    std::string title;
    {
        std::lock_guard lock(mutex_);
        if (title_ == sent_title_) return;
        title = title_;
    }
    // An Ogg stream carries its title in its own comments; the encoder restarts it.
    if (format_ == "mp3") {
        shout_metadata_t* meta = shout_metadata_new();
        if (shout_metadata_add(meta, "song", title.c_str()) != SHOUTERR_SUCCESS ||
            shout_set_metadata_utf8(as_shout(shout_), meta) != SHOUTERR_SUCCESS)
            say("stream: the server did not take the title \"" + title + "\"");
        shout_metadata_free(meta);
    }
    std::lock_guard lock(mutex_);
    sent_title_ = title;
}

void IcecastSource::poll_listeners() {
    if (const auto status = FetchIcecastStatus(target_.host, target_.port)) {
        const int n = ListenersOf(*status, target_.mount);
        if (n >= 0) listeners_.store(n);
    }
}

void IcecastSource::run() {
    // A server that goes away mid-write must give an error here, not end the station:
    // libshout writes to its socket without asking for that.
    sigset_t pipe;
    sigemptyset(&pipe);
    sigaddset(&pipe, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &pipe, nullptr);
    int backoff = kFirstBackoffMs;
    int attempt = 0;
    bool connected = false;
    auto next_poll = std::chrono::steady_clock::now();
    for (;;) {
        {
            std::lock_guard lock(mutex_);
            if (quit_) return;
        }
        if (!connected) {
            if (!connect_once(++attempt)) {
                say("stream: next attempt in " + std::to_string(backoff / 1000) + " s");
                wait_ms(backoff);
                backoff = std::min(backoff * 2, kLastBackoffMs);
                continue;
            }
            backoff = kFirstBackoffMs;
            attempt = 0;
            {
                std::lock_guard lock(mutex_);
                sent_title_.clear();
                accepting_ = false;
            }
            connected = true;
            restart_wanted_.store(true);
        }
        std::vector<std::uint8_t> chunk;
        {
            std::unique_lock lock(mutex_);
            wake_.wait_for(lock, std::chrono::milliseconds(200),
                           [this] { return quit_ || !queue_.empty() || title_ != sent_title_; });
            if (quit_) return;
            if (!queue_.empty()) {
                chunk = std::move(queue_.front());
                queue_.pop_front();
                queued_bytes_ -= chunk.size();
            }
        }
        if (!chunk.empty() &&
            shout_send(as_shout(shout_), chunk.data(), chunk.size()) != SHOUTERR_SUCCESS) {
            say("stream: connection to " + address() +
                " lost: " + shout_get_error(as_shout(shout_)));
            shout_close(as_shout(shout_));
            connected = false;
            listeners_.store(0);
            {
                std::lock_guard lock(mutex_);
                accepting_ = false;
            }
            say("stream: next attempt in " + std::to_string(backoff / 1000) + " s");
            wait_ms(backoff);
            backoff = std::min(backoff * 2, kLastBackoffMs);
            continue;
        }
        send_title();
        if (std::chrono::steady_clock::now() >= next_poll) {
            poll_listeners();
            next_poll = std::chrono::steady_clock::now() + kListenerPoll;
        }
    }
}

}  // namespace tavora
