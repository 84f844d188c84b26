#include "station/station_app.h"

#include <initializer_list>
#include <vector>

#include "core/log/play_log.h"
#include "core/rotation/rotate_db.h"
#include "core/settings/extensions.h"
#include "core/settings/session_file.h"
#include "internet/wiring.h"
#include "platform/clock.h"
#include "platform/dialogs.h"
#include "platform/file_ops.h"
#include "platform/path_map.h"
#include "players/probe_player.h"
#include "runtime/strings.h"
#include "store/recordset.h"
#include "store/stored_queries.h"

namespace tavora {

namespace {

constexpr const char* kDefaultLibrary = "c:\\tavora\\qx1.mdb";
// An operator answers the library question in a few tries; a station with
// nobody at it must not ask for ever.
constexpr int kLibraryAsks = 100;

}  // namespace

namespace {

PlayerFactory bank_players(const Services& services, const PlayerFactory& players) {
    return players ? players : probe_players(services.clock, services.loop);
}

constexpr int kCdPlayer = 8;  // the CD's player, after the bank's seven

}  // namespace

StationApp::StationApp(const Services& services, const PlayerFactory& players,
                       EncoderFactory encoders)
    : services_(services),
      setup(station, services, pool),
      request(station, services, pool),
      mail(station, services, pool),
      schedule(station, services_, pool, qx_main, type_lookup, setup.datPrimaryRS),
      playback(station, services, PlaybackScreens{qx_main, loding, viewer}, tavora_db.Data1,
               bank_players(services, players),
               SelectionPort{[this] { selection.auto_run(); }, [this] { schedule.Check_Sched(); }}),
      recorder(services, viewer, std::move(encoders)),
      cd_deck_(std::make_unique<PlayerDeck>(bank_players(services, players)(kCdPlayer))),
      cd_image_([lengths = std::make_shared<MediaLengths>()](const std::string& path,
                                                             std::string& error) {
          return lengths->length(path, error);
      }),
      cd_drive_({}, services.paths.install_folder() / "cdcache"),
      mci_(cd_image_, *cd_deck_),
      cd_player(station, services_, pool, mci_, playback, qx_main) {
    wire_request_menus(qx_main, request, mail, web, manager);
    wire_request_window(station, qx_main, request, mail, manager, playback, viewer);
    schedule.CheckTime = request.CheckTime;
    playback.station_port.end_program = [this] { Shutdown(); };
    qx_main.on_click("mnu_File_Run", [this](int) { playback.Run(); });
    qx_main.on_click("mnu_File_Pause", [this](int) { playback.Ply_Pse(); });
    // The entry stays off while its window is open, so one click loads it once.
    qx_main.on_click("Catover", [this](int) {
        qx_main.Catover.Enabled = false;
        form2.Form_Load();
        form2.Visible = true;
    });
    form2.Unloaded = [this] { qx_main.Catover.Enabled = true; };
    setup.End_Program = [this] { Shutdown(); };
    setup.Extensions_Saved = [this](const Extensions& saved) {
        extensions = saved;
        apply_extensions();
    };
    qx_main.on_click("mnu_File_Exit", [this](int) { Shutdown(); });
    qx_main.on_click("Log_View", [this](int) { Log_View(services_); });
    qx_main.on_click("mnu_Options_Setup", [this](int) {
        setup.Form_Load();
        setup.Visible = true;
    });
    qx_main.on_click("mnu_View_Schedule1", [this](int) {
        schedule.Form_Load();
        schedule.Visible = true;
    });
    qx_main.on_click("AdvSched", [this](int) {
        advschedule.Form_Load();
        advschedule.Visible = true;
    });
    qx_main.on_click("B_Cast", [this](int) {
        services_.dialogs.MsgBox(
            "Warning! You must start recording prior to running the Tavora "
            "Players for correct operation");
        recorder.Form_Load();
        recorder.Visible = true;
    });
    playback.station_port.on_air = [this](int slot) {
        recorder.Air_Title.set(station.Slot_Title[slot]);
    };
    // A saved recording enters the library by the add step the wizard uses.
    recorder.Asf_Add = [this](const std::string& file) {
        if (!tavora_db.Loaded) tavora_db.Form_Load();
        tavora_db.Wiz_On = 1;
        tavora_db.Wiz_File = file;
        tavora_db.Asf_Add();
        tavora_db.Wiz_On = 0;
    };
    qx_main.on_click("mnu_Options_AutoRewind", [this](int) {
        type_lookup.Form_Initialize();
        type_lookup.Visible = true;
    });
    wire_side_tools(qx_main, about, browser, system_info, services_);
    wire_catalogue();
    wire_cd();
    dead_air.fallback_player(probe_players(services.clock, services.loop)(kPlayers + 1));
    playback.level_trim = [this](const std::string& file) {
        return loudness_book_ ? normalising_gain(loudness_book_->find(file), loudness_target_)
                              : 0.0;
    };
    request.air_state = [this] { return dead_air.state(); };
}

void StationApp::wire_cd() {
    auto toggle = [this](int) { cd_player.CDButt_Click(); };
    viewer.on_click("CDButt", toggle);
    qx_main.on_click("CD_PLYR", toggle);
    playback.station_port.CDButt_Click = [this] { cd_player.CDButt_Click(); };
    playback.station_port.cd_shown = [this] { return cd_player.Visible; };
    playback.station_port.unload_cd = [this] { cd_player.Form_Unload(); };
    playback.station_port.CDAutplay = [this] { return cd_player.CDAutplay(); };
    selection.hooks.cd_seek = [this](int track) { cd_player.cd_seek(track); };
    cd_deck_->state_changed = [this](int state) {
        if (playback.observer) playback.observer->cd_state_changed(state);
    };
}

void StationApp::choose_cd_drive() {
    const std::filesystem::path image =
        !cd_image.empty() ? cd_image : std::filesystem::path(extensions.CD_Image);
    if (!image.empty()) {
        for (const auto& problem : insert_cd(image))
            services_.dialogs.MsgBox(problem, Buttons::OKOnly, "Tavora CD Player");
        return;
    }
    cd_drive_.set_device(extensions.CD_Device);
    mci_.use_drive(cd_drive_);
}

std::vector<std::string> StationApp::insert_cd(const std::filesystem::path& folder) {
    if (&mci_.drive() != &cd_image_) mci_.use_drive(cd_image_);
    return cd_image_.insert(folder);
}

void StationApp::eject_cd() {
    mci_.drive().eject();
}

void StationApp::wire_catalogue() {
    CatalogueHooks& hooks = tavora_db.hooks;
    hooks.measure_length = [lengths = std::make_shared<MediaLengths>()](const std::string& path,
                                                                        std::string& error) {
        return lengths->length(path, error);
    };
    hooks.reload_request = [this] {
        request.Visible = false;
        request.Left = 0;
        request.Top = 0;
        request.Form_Load();
        request.Visible = true;
    };
    hooks.viewer_loaded = [this] { return viewer.Loaded; };
    hooks.record_added = [this](long long rec_id, const std::string& file) {
        if (loudness_worker_) loudness_worker_->add(rec_id, file);
    };
    hooks.open_type_lookup = [this] {
        type_lookup.Form_Initialize();
        type_lookup.Visible = true;
    };
    playback.station_port.Mnu_Aut_Add_Click = [this] { tavora_db.Mnu_Aut_Add_Click(); };
    qx_main.on_click("Mnu_Aut_Add", [this](int) { tavora_db.Mnu_Aut_Add_Click(); });
    qx_main.on_click("Mnu_Find", [this](int) { tavora_db.Form_Load(); });
    qx_main.on_click("mnu_Options_DisplayTime", [this](int) {
        tavora_db.Form_Load();
        tavora_db.QX_Imp();
    });
    qx_main.on_click("ChartDir", [this](int) {
        tavora_db.Form_Load();
        tavora_db.show_tab(3);
    });
}

StationApp::~StationApp() = default;

Form* StationApp::form(std::string_view name) {
    for (Form* window : std::initializer_list<Form*>{
             &qx_main, &setup, &about, &tavora_db, &request, &viewer, &loding, &mail, &type_lookup,
             &tavora_db.Wizard, &schedule, &form2, &advschedule, &playback.on_air, &recorder,
             &browser, &system_info, &cd_player}) {
        if (window->name() == name) return window;
    }
    for (int n = 1; n <= kPlayers; ++n) {
        if (playback.Player_Forms(n).name() == name) return &playback.Player_Forms(n);
    }
    return nullptr;
}

std::filesystem::path StationApp::home() const {
    return services_.paths.install_folder();
}

std::filesystem::path StationApp::native(const std::string& dos) const {
    return services_.paths.ToNative(dos).path;
}

bool StationApp::Sub_Main() {
    lock_.emplace(home());
    if (!lock_->held() &&
        services_.dialogs.MsgBox("The Tavora Music System is already running on this machine. Do "
                                 "you want to EXIT this instance now?",
                                 Buttons::YesNo) == Answer::Yes) {
        ended_ = true;
        if (on_end) on_end();
        return false;
    }

    setup.Form_Load();
    qx_main.Visible = false;
    about.Visible = true;
    about.cmdOK.Visible = false;
    about.picIcon.Enabled = false;

    station.set_defaults(services_.clock.Now());
    qx_main.MousePointer = 11;
    qx_main.Fit_Wind_Click();

    const auto session_file = home() / "qxbp.ini";
    if (!files::Exists(session_file)) {
        Station defaults;
        defaults.Snip_Max = 3;  // a new file's value; an old file without it keeps 1
        BP_Ini(defaults, session_file);
    }
    Read_BP(station, session_file);
    station.Ply7_Mix = station.Ply7_MixOut;
    read_extension_settings();

    Recordset& row = setup.datPrimaryRS.Recordset();
    row.MoveFirst();
    if (!row.is_editing()) row.Edit();
    row.SetField("Use Time Filter", Value::boolean(false));
    row.Update();
    station.Act_Db = row.Fields("Active Database").text();

    if (!ask_for_library()) return false;
    read_setup_row();
    setup.Form_Unload();

    if (LCase(Left(station.Act_Db, 2)) != "c:") station.Run_Mode = 1;

    if (station.Run_Mode != 1 && !Rotate_Db(station, services_)) {
        setup.Form_Load();
        setup.Visible = true;
        return false;
    }

    tavora_db.Loaded = true;
    tavora_db.Data1.DatabaseName = native(station.Act_Db).string();
    start_loudness();
    request.Left = 0;
    request.Top = 0;
    request.Form_Load();
    schedule.Loaded = true;
    schedule.Form_Load();
    viewer.Loaded = true;
    loding.Loaded = true;
    loding.Left = request.Width / 2.5;
    loding.Top = request.Height / 2.5;

    for (int panel : {8, 7, 6, 5})
        qx_main.Panel(panel).Text = "0";

    about.cmdOK.Visible = true;
    about.picIcon.Enabled = true;
    // A library that can't take the queries keeps the ones it has; start-up
    // goes on without a word, as the rules have it.
    if (auto library = pool.open(native(station.Act_Db), FileKind::Library).library) {
        Make_Qrys(*library, services_.clock.Now(), [this] {
            station.CD_Disc = 0;
            station.CD_Id = "0CD";
        });
    }
    about.Visible = false;
    about.Loaded = false;

    qx_main.Left = station.Wnd_Left;
    qx_main.Height = station.Wnd_Height;
    qx_main.Width = station.Wnd_Width;
    qx_main.Top = station.Wnd_Top;
    qx_main.WindowState = station.Wnd_State;
    qx_main.Visible = true;
    qx_main.MousePointer = 0;

    station.IIS_Name = "TQXMS Direct";
    request.Visible = true;
    start_internet_interface();

    // Loading the category window brings the working weights in step.
    type_lookup.Form_Initialize();
    type_lookup.Form_Unload();
    return true;
}

bool StationApp::ask_for_library() {
    for (int asked = 0; !files::Exists(native(station.Act_Db)); ++asked) {
        if (asked == kLibraryAsks) {
            Shutdown();
            return false;
        }
        std::string answer = services_.dialogs.InputBox(
            "Enter the EXACT path and file name of your database Ex(c:\\tavora\\qx1.mdb): ",
            "TQXMS DATABASE MISSING!!!", station.Act_Db);
        if (answer.empty()) {
            ended_ = true;
            if (on_end) on_end();
            return false;
        }
        if (!files::Exists(native(answer)) &&
            services_.dialogs.MsgBox(
                "THAT Didn't Work! Do you want to try the default (c:\\tavora\\qx1.mdb)?",
                Buttons::YesNo, "Ouch!") == Answer::Yes) {
            answer = kDefaultLibrary;
        }
        if (files::Exists(native(answer))) {
            station.Act_Db = answer;
            Recordset& row = setup.datPrimaryRS.Recordset();
            row.MoveFirst();
            if (!row.is_editing()) row.Edit();
            row.SetField("Active Database", Value(answer));
            row.Update();
            services_.dialogs.MsgBox("Your Database hase been changed to: " + answer);
        }
    }
    return true;
}

// Written out the first time, so that the operator finds every switch.
void StationApp::read_extension_settings() {
    const auto file = home() / "tavora.ini";
    std::vector<std::string> complaints;
    extensions = read_extensions(file, &complaints);
    for (const auto& complaint : complaints)
        services_.dialogs.MsgBox(complaint, Buttons::OKOnly, "Tavora Settings");
    if (!files::Exists(file)) write_extensions(extensions, file);
    apply_extensions();
    choose_cd_drive();
}

void StationApp::read_setup_row() {
    Recordset& row = setup.datPrimaryRS.Recordset();
    row.MoveFirst();
    station.Run_Mode = row.Fields("Use Playlist").truthy() ? 1 : 0;
    if (row.Fields("Use Schedule").truthy()) station.Run_Mode = 2;
    station.Power_Every = static_cast<int>(row.Fields("Default Mix Out").number());
    station.Power_Ctr = station.Power_Every;
    if (row.Fields("MorS").truthy()) station.Power_On = 1;
    if (row.Fields("Use Weekday Filter").truthy()) station.Ply7_On = 1;
    if (row.Fields("Use Max Plays").truthy()) station.Live_Pop = 1;
}

void StationApp::start_internet_interface() {
    const auto file = home() / "tqxiis.ini";
    if (!files::Exists(file)) {
        write_default_tqxiis(file);
        return;
    }
    read_tqxiis_switches(station, file);
    if (station.IIS_On && station.IIS_AutoLoad) {
        mail.Form_Load();
        mail.WindowState = 1;
        mail.Left = 0;
        mail.Top = 2940;
        mail.Width = 6750;
        mail.Height = 3800;
        mail.Visible = true;
    }
}

void StationApp::Shutdown() {
    if (ended_) return;
    loudness_worker_.reset();  // a measurement under way is dropped, not stored
    BP_Ini(station, home() / "qxbp.ini");
    if (station.CD_On && cd_player.Loaded) cd_player.cmdClose_Click();
    if (mail.Loaded) mail.TQXi_Sav(home() / "tqxiis.ini");
    ended_ = true;
    if (on_end) on_end();
}

}  // namespace tavora
