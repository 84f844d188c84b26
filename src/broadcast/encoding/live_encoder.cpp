#include "broadcast/encoding/live_encoder.h"

#include <chrono>

#include "broadcast/encoding/av_encoder.h"
#include "platform/path_map.h"

namespace tavora {

namespace {

// About five seconds of mix between the mixer and the encoder.
constexpr std::size_t kRingBlocks = 256;
constexpr auto kIdle = std::chrono::milliseconds(5);
constexpr auto kDropReportEvery = std::chrono::seconds(10);

}  // namespace

LiveEncoder::LiveEncoder(audio::MixTap& tap, const PathMap& paths, const AirTitle& titles,
                         EncoderLog log)
    : tap_(tap), paths_(paths), titles_(titles), log_(std::move(log)) {}

LiveEncoder::~LiveEncoder() {
    Stop();
}

bool LiveEncoder::LoadASD(const std::string& path) {
    if (started_.load()) return false;
    ProfileRead read = ReadProfile(path);
    if (!read.profile) {
        log_("recorder: " + path + ": " + read.error);
        return false;
    }
    std::string why;
    auto av = AvEncoder::open(*read.profile, why);
    if (!av) {
        log_("recorder: " + path + ": " + why);
        return false;
    }
    profile_ = std::move(read.profile);
    av_ = std::move(av);
    return true;
}

bool LiveEncoder::Start() {
    if (!av_ || started_.load()) return false;
    const auto native = paths_.ToNative(profile_->file);
    std::string why;
    if (!native.ok() || !av_->open_file(native.path, why)) {
        log_("recorder: " + (why.empty() ? "no folder for " + profile_->file : why));
        return false;
    }
    if (profile_->stream) {
        source_ = IcecastSource::start(*profile_->stream, av_->stream_format(), *profile_, log_);
    }
    ring_ = std::make_unique<audio::MixRing>(kRingBlocks, tap_.offline());
    size_.store(av_->file_bytes());
    duration_.store(0);
    dropped_.store(0);
    quit_.store(false);
    recording_.store(true);
    started_.store(true);
    tap_.attach(ring_.get());
    thread_ = std::thread([this] { run(); });
    log_("recorder: recording to " + profile_->file + " (" + profile_->description + ")");
    return true;
}

void LiveEncoder::Stop() {
    if (!started_.load() && !thread_.joinable()) return;
    tap_.detach();
    quit_.store(true);
    if (thread_.joinable()) thread_.join();
    if (source_) source_->close();
    source_.reset();
    ring_.reset();
    av_.reset();
    started_.store(false);
    recording_.store(false);
}

int LiveEncoder::IPPort() const {
    return profile_ && profile_->stream ? profile_->stream->port : 0;
}

int LiveEncoder::numclients() const {
    return source_ ? source_->listeners() : 0;
}

int LiveEncoder::DelayBuffer() const {
    return static_cast<int>(kRingBlocks * audio::MixRing::kBlockFrames * 1000 / audio::kRate);
}

int LiveEncoder::AudioFormatTag() const {
    return av_ ? av_->format_tag() : 0;
}

std::string LiveEncoder::StreamAlias() const {
    return profile_ && profile_->stream ? profile_->stream->mount : "";
}

void LiveEncoder::report_drops(std::int64_t dropped) {
    const std::int64_t total = dropped_.fetch_add(dropped) + dropped;
    log_("recorder: the encoder fell behind the air; " + std::to_string(dropped) +
         " frames dropped (" + std::to_string(total) + " since the start)");
}

// Ogg carries the title in the stream itself, so a new title starts a new stream
// section; MP3 sends it beside the stream.
void LiveEncoder::pass_title(std::uint64_t& seen) {
    const bool restart = source_->take_restart();
    auto [title, version] = titles_.get();
    if (!restart && version == seen) return;
    seen = version;
    const bool ogg = std::string(av_->stream_format()) == "ogg";
    if (restart || ogg) {
        source_->restarted();
        IcecastSource* source = source_.get();
        av_->open_stream([source](const std::uint8_t* d, std::size_t n) { source->send(d, n); },
                         title);
    }
    source_->set_title(title);
}

void LiveEncoder::run() {
    std::uint64_t seen_title = ~std::uint64_t{0};
    std::int64_t pending_drops = 0;
    auto last_drop_report = std::chrono::steady_clock::now() - kDropReportEvery;
    for (;;) {
        audio::MixRing::Block* block = ring_->front();
        if (block == nullptr) {
            if (quit_.load()) break;
            pending_drops += ring_->take_dropped();
            const auto now = std::chrono::steady_clock::now();
            if (pending_drops > 0 && now - last_drop_report >= kDropReportEvery) {
                report_drops(pending_drops);
                pending_drops = 0;
                last_drop_report = now;
            }
            if (source_) pass_title(seen_title);
            std::this_thread::sleep_for(kIdle);
            continue;
        }
        const bool had_file = av_->file_open();
        if (!av_->encode(block->samples.data(), block->frames) && had_file) {
            log_("recorder: writing " + profile_->file +
                 " failed (is the disk full?); the recording ends here, the air goes on");
            av_->close_file();
        }
        ring_->release();
        size_.store(av_->file_bytes());
        duration_.store(av_->seconds());
        const std::int64_t max = max_size_.load();
        if (av_->file_open() && max > 0 && av_->file_bytes() >= max) {
            log_("recorder: " + profile_->file + " reached its maximum size");
            av_->close_file();
            size_.store(av_->file_bytes());
        }
        if (!av_->file_open()) recording_.store(false);
        if (source_) pass_title(seen_title);
    }
    pending_drops += ring_->take_dropped();
    if (pending_drops > 0) report_drops(pending_drops);
    av_->finish();
    size_.store(av_->file_bytes());
}

EncoderFactory live_encoders(audio::MixTap& tap, const PathMap& paths, EncoderLog log) {
    return [&tap, &paths, log](const AirTitle& titles) {
        return std::make_unique<LiveEncoder>(tap, paths, titles, log);
    };
}

}  // namespace tavora
