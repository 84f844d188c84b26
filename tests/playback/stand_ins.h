#pragma once

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "core/fake_services.h"
#include "platform/clock.h"
#include "playback/playback.h"
#include "players/probe_player.h"
#include "runtime/dates.h"
#include "store/library.h"
#include "store/library_files.h"
#include "store/recordset.h"

// Stand-ins for what surrounds the bank, shared by the tests and the
// benchmarks: selection, a library of plain rows, and a log of what aired.
namespace tavora::test {

// A record as selection's commit puts it into a slot; files lie on drive d:.
struct Song {
    std::string file;
    double mix_in = 0, mix_out = 5;
    bool fade_in = false, fade_out = false;
    int special = 0;
    double vol = 0, start = 0, end = -1;
};

inline void put(Station& station, int slot, const Song& song, long rec_id) {
    station.Slot_File[slot] = "d:\\" + song.file;
    station.Slot_Title[slot] = song.file;
    station.Slot_RecID[slot] = rec_id;
    station.Slot_Special[slot] = song.special;
    station.Slot_Vol[slot] = song.vol;
    station.Slot_Start[slot] = song.start;
    station.Slot_End[slot] = song.end;
    station.Slot_MixIn[slot] = song.mix_in;
    station.Slot_MixOut[slot] = song.mix_out;
    station.Slot_FadeIn[slot] = song.fade_in;
    station.Slot_FadeOut[slot] = song.fade_out;
    station.Slot_Started[slot] = 0;
    station.Slot_Ready[slot] = 1;
}

// Selection's stand-in: fills the slot from its list in turn, song n being row n.
class FakeSelection {
  public:
    explicit FakeSelection(Station& station) : station_(station) {}

    std::vector<Song> songs;
    int picks = 0;
    int schedule_checks = 0;

    void auto_run() {
        station_.Sel_Starved = songs.empty() ? 1 : 0;
        if (station_.Sel_Starved != 0) return;
        const std::size_t index = static_cast<std::size_t>(picks++) % songs.size();
        put(station_, station_.Cue_Slot, songs[index], static_cast<long>(index) + 1);
    }

    SelectionPort port() {
        return {[this] { auto_run(); }, [this] { ++schedule_checks; }};
    }

  private:
    Station& station_;
};

// What aired: every play-state change with its station time in seconds.
class AirLog : public PlaybackObserver {
  public:
    struct Change {
        double at;
        int player, slot, state;
    };

    explicit AirLog(const VirtualClock& clock) : clock_(clock) {}

    void committed(int slot) override { commits.push_back(slot); }
    void state_changed(int player, int slot, int state) override {
        changes.push_back({seconds(), player, slot, state});
    }
    void run_stopped(const std::string& message) override { stops.push_back(message); }

    double seconds() const { return static_cast<double>(clock_.ElapsedMs()) / 1000.0; }

    // When `player` started to play, leaving out primings (paused at once).
    std::vector<double> starts(int player) const {
        std::vector<double> at;
        for (std::size_t i = 0; i < changes.size(); ++i) {
            const Change& c = changes[i];
            if (c.player != player || c.state != MediaPlayer::kPlaying) continue;
            std::size_t next = i + 1;
            while (next < changes.size() && changes[next].player != player)
                ++next;
            const bool primed = next < changes.size() && changes[next].at == c.at &&
                                changes[next].state == MediaPlayer::kPaused;
            if (!primed) at.push_back(c.at);
        }
        return at;
    }

    // Silences between the first play and `until`, as (start, length).
    std::vector<std::pair<double, double>> silences(double until) const {
        std::vector<std::pair<double, double>> gaps;
        bool playing[kPlayers + 1] = {};
        int count = 0;
        double quiet_since = -1;
        for (const Change& c : changes) {
            const bool now = c.state == MediaPlayer::kPlaying;
            if (now == playing[c.player]) continue;
            playing[c.player] = now;
            count += now ? 1 : -1;
            if (count == 1 && now && quiet_since >= 0 && c.at > quiet_since)
                gaps.emplace_back(quiet_since, c.at - quiet_since);
            if (count == 0) quiet_since = c.at;
        }
        if (count == 0 && quiet_since >= 0 && until > quiet_since)
            gaps.emplace_back(quiet_since, until - quiet_since);
        return gaps;
    }

    std::vector<Change> changes;
    std::vector<int> commits;
    std::vector<std::string> stops;

  private:
    const VirtualClock& clock_;
};

// Adds plain records through the pool, so every data control sees them at once.
inline bool add_rows(LibraryPool& pool, const std::filesystem::path& file, int rows) {
    auto library = pool.open(file, FileKind::Library).library;
    if (!library) return false;
    Transaction batch = library->transaction();
    Recordset table;
    if (!table.Open(library, "Recordings1")) return false;
    for (int i = 0; i < rows; ++i) {
        table.AddNew();
        table.SetField("Title", Value("Song " + std::to_string(i)));
        if (!table.Update()) return false;
    }
    return batch.commit();
}

// A station's bank on virtual time, with a library of plain records and
// selection's stand-in; drive d: is `media`.
class BankRig {
  public:
    static constexpr int kRows = 60;
    static double start_date() { return DateSerial(2026, 3, 9) + 10.0 / 24.0; }

    explicit BankRig(const std::string& media) : fake(start_date()) {
        fake.paths.SetDrive('d', media);
        station.set_defaults(fake.clock.Now());
        station.Run_Mode = 0;
        station.Log_Due = 0;
        const auto library = fake.home() / "qx1.mdb";
        setup_error = create_library_file(library, start_date());
        if (setup_error.empty() && !add_rows(pool, library, kRows)) setup_error = "no rows added";
        data1.DatabaseName = library.string();
        request.break_button = &break_button;
        break_button.Caption = "Break";
    }

    void make(const PlayerFactory& players) {
        playback = std::make_unique<Playback>(station, fake.services,
                                              PlaybackScreens{main, loding, viewer}, data1, players,
                                              selection.port());
        playback->observer = &air;
        playback->request = request;
    }
    void make_probe() { make(probe_players(fake.clock, fake.loop)); }

    void run() {
        if (!playback) make_probe();
        playback->Run();
    }
    void wait(double seconds) { fake.loop.run_for(static_cast<std::int64_t>(seconds * 1000)); }
    double now() const { return air.seconds(); }
    template <typename F>
    bool wait_until(F done, double limit) {
        const double until = now() + limit;
        while (!done() && now() < until)
            fake.loop.run_for(100);
        return done();
    }

    std::string setup_error;  // empty when the library was made
    FakeServices fake;
    Station station;
    QXMain main{station};
    frmLoding loding;
    frmViewer viewer;
    Control break_button;
    RequestPort request;
    LibraryPool pool;
    DataControl data1{pool};
    FakeSelection selection{station};
    AirLog air{fake.clock};
    std::unique_ptr<Playback> playback;
};

}  // namespace tavora::test
