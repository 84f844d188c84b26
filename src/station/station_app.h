#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>

#include "broadcast/enc_rep.h"
#include "catalogue/frm_tavora_db.h"
#include "catalogue/loudness_book.h"
#include "catalogue/loudness_worker.h"
#include "core/services.h"
#include "core/settings/extensions.h"
#include "core/settings/frm_setup.h"
#include "core/station.h"
#include "core/windows/frm_loding.h"
#include "core/windows/qx_main.h"
#include "internet/mailfrm.h"
#include "internet/station_manager.h"
#include "internet/web_list.h"
#include "platform/cdio_drive.h"
#include "platform/disc_image.h"
#include "platform/mci_cd_audio.h"
#include "platform/path_map.h"
#include "playback/cd_deck.h"
#include "playback/dead_air_watch.h"
#include "playback/form1.h"
#include "playback/frm_viewer.h"
#include "playback/media_player.h"
#include "playback/playback.h"
#include "requests/request_form.h"
#include "selection/advschedule.h"
#include "selection/form2.h"
#include "selection/frm_schedule1.h"
#include "selection/selection.h"
#include "selection/type_lookup.h"
#include "station/frm_about.h"
#include "station/instance_lock.h"
#include "station/side_tools.h"
#include "store/library.h"

namespace tavora::audio {
class Engine;
}

namespace tavora {

// A file's loudness as the engine decodes and measures it.
std::optional<Measurement> measure_file(const std::string& native, std::string& error,
                                        const std::atomic<bool>* stop);
// The library's stored paths as this machine's files, on any thread.
NativeFile native_files(PathMap paths);

// The whole station: its state, its windows and their wiring. Start-up
// brings the windows up in their fixed order; from then on everything
// happens in timer and control events on the loop the front end runs.
class StationApp {
  public:
    // `players` makes the bank's seven players; without it they are probe
    // players that only time each file.
    // `encoders` makes the recorder's encoder; without it the recorder says
    // that there is none.
    explicit StationApp(const Services& services, const PlayerFactory& players = {},
                        EncoderFactory encoders = {});
    ~StationApp();

    // Runs start-up to the idle state. False when start-up ended the
    // program (an answer to a dialog) or stopped at the Setup screen.
    bool Sub_Main();

    // The one shutdown path: save qxbp.ini, close the CD player if open, save
    // the internet settings if that window is loaded, and end.
    void Shutdown();
    // Set once the program has ended; the front end stops its loop.
    bool ended() const { return ended_; }
    // Called when the program ends, after Shutdown's saves.
    std::function<void()> on_end;

    // A window by its name, as scripts and tests reach controls; null when
    // there is none.
    Form* form(std::string_view name);

    // The watchdog hears the engine's meter and covers silence on a player of
    // the engine's own; without this it watches the players' states.
    void attach_air_meter(audio::Engine& engine);
    // Off: the library's loudness is measured only by `tavora --analyse`,
    // and runs give the same mix every time.
    bool measure_in_background = true;
    // Whether the library's loudness is being measured in the background.
    bool measuring_loudness() const { return loudness_worker_ != nullptr; }

  private:
    // The services as the selection windows take them.
    Services services_;

  public:
    Station station;
    Extensions extensions;  // read from tavora.ini at start-up
    LibraryPool pool;

    QXMain qx_main{station};
    frmSetup setup;
    frmAbout about;
    frmTavoraDb tavora_db{station, services_, pool};
    Request request;
    frmViewer viewer;
    frmLoding loding;
    Mailfrm mail;
    frmTypeLookup type_lookup{station, services_, pool};
    frmSchedule1 schedule;
    Form2 form2{station, services_, pool};
    Advschedule advschedule{station, services_, pool};
    Selection selection{station, services_, pool, qx_main, loding, type_lookup};
    StationManagerLink manager{station, services_};
    WebList web{request, station, services_};
    Playback playback;
    EncRep recorder;
    frmBrowser browser;
    frmSystemInfo system_info{station, services_, pool};
    DeadAirWatch dead_air{station, services_, playback};

  private:
    // The CD drive as MCI sees it: a disc image, or the machine's drive.
    std::unique_ptr<PlayerDeck> cd_deck_;
    DiscImageDrive cd_image_;
    CdioDrive cd_drive_;
    MciCdAudio mci_;

  public:
    Form1 cd_player;
    // --cd-image: a folder standing for the disc, over tavora.ini's.
    std::filesystem::path cd_image;
    // Puts a disc image in the drive, which becomes the image drive from
    // then on; the sentences of what is wrong with the image.
    std::vector<std::string> insert_cd(const std::filesystem::path& folder);
    void eject_cd();

  private:
    std::filesystem::path home() const;
    std::filesystem::path native(const std::string& dos) const;
    bool ask_for_library();
    void read_setup_row();
    void read_extension_settings();
    void start_internet_interface();
    void wire_catalogue();
    void wire_cd();
    void choose_cd_drive();
    void apply_extensions();
    void start_loudness();
    void measure_while_normalising();

    LoudnessTarget loudness_target_;
    std::unique_ptr<LoudnessBook> loudness_book_;  // the rule thread's
    std::unique_ptr<LoudnessWorker> loudness_worker_;

    std::optional<InstanceLock> lock_;
    bool ended_ = false;
};

}  // namespace tavora
