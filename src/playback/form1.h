#pragma once

#include <memory>
#include <string>
#include <vector>

#include "core/forms/form.h"
#include "core/services.h"
#include "core/station.h"
#include "platform/event_loop.h"
#include "platform/mci.h"
#include "store/data_control.h"

namespace tavora {

class Playback;
class QXMain;

// "Tavora CD Player": drives the disc through MCI command strings,
// catalogues it under a key worked out from its times, and takes the air
// in place of the bank at the end of a set. Rule thread only.
class Form1 : public Form {
  public:
    Form1(Station& station, const Services& services, LibraryPool& pool, Mci& mci,
          Playback& playback, QXMain& main);
    ~Form1() override;

    void Form_Load();
    void Form_Unload();
    // Sends one command; with `report`, a failure other than 289 is shown
    // in a box. True when the code is 0.
    bool Mci_Do(const std::string& command, bool report);
    void Timer1_Timer();
    void CD_Poll();

    void play_Click();
    void pause_Click();
    void stopbtn_Click();
    void eject_Click();
    void ff_Click() { wind(+1); }
    void rew_Click() { wind(-1); }
    void ftrack_Click();
    void btrack_Click();
    void Seek_Trk_Click();
    void CmdHide_Click() { Visible = false; }
    void cmdClose_Click();
    void Speed_Click();

    // The tick's call when a set ends with a cued CD; false when the drive
    // would not play.
    bool CDAutplay();
    // Selection's seek when a CD track is cued in slot 15.
    void cd_seek(int track);
    // `CDButt` of the viewer, and the menu's "View/Hide CD Player".
    void CDButt_Click();

    Timer& Timer1() { return *timer1_; }
    DataControl Data1;

    // State of the form, as the rules name it.
    bool CD_Loaded = false;
    bool CD_Playing = false;
    int CD_Tracks = 0;
    int CD_Track = 0;
    std::vector<std::string> CD_TrackLen;  // 1 to CD_Tracks
    int CD_Wait = 0;
    double CD_MixLeft = 0;
    int CD_SeekTo = 1;  // the track `Seek_Trk` goes to
    int FF_Step = 10;   // seconds `ff` and `rew` move by
    int Ply7_Was = 0;   // the seventh player's switch before the view took it

    Control& play = add("play");
    Control& pause = add("pause");
    Control& stopbtn = add("stopbtn");
    Control& eject = add("eject");
    Control& ff = add("ff");
    Control& rew = add("rew");
    Control& ftrack = add("ftrack");
    Control& btrack = add("btrack");
    Control& Seek_Trk = add("Seek_Trk");
    Control& Speed = add("Speed");
    Control& CmdHide = add("CmdHide");
    Control& cmdClose = add("cmdClose");
    Control& TrackNo = add_text("TrackNo");
    Control& Label1 = add("Label1");  // "ID = "
    Control& Label2 = add("Label2");  // tracks and total time
    Control& Frame1 = add("Frame1");  // the disc's title
    Control& timeWindow = add("timeWindow");
    Control& tracktime = add("tracktime");
    Control& StatusText = add("StatusText");
    // The disc's rows, one line a track; the chosen row follows Data1.
    Control& DBGrid1 = add_list("DBGrid1");
    // The chosen row's on/off text: checked "On", cleared "Off".
    Control& TrackOn = add_check("TrackOn");

  private:
    void no_disc();
    void enter_disc();
    bool find_disc_rows();
    void catalogue_disc();
    void later_second();
    void new_track(int track);
    void mix_back();
    void wind(int direction);
    void go_to_track(int track);
    void enable_buttons(bool on);
    void show_rows();
    void TrackOn_Click();
    void DBGrid1_Click();
    Recordset& rows() { return Data1.Recordset(); }

    Station& s_;
    const Services& services_;
    Mci& mci_;
    Playback& playback_;
    QXMain& main_;
    std::unique_ptr<Timer> timer1_;
    std::string reply_;  // the reply buffer
    long first_row_ = -1, last_row_ = -1;
    bool mix_flag_ = false;
    std::string log_text_;
};

}  // namespace tavora
