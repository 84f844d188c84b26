#include "internet/wiring.h"

#include "selection/check_time.h"

namespace tavora {

void wire_request_menus(QXMain& main, Request& request, Mailfrm& mail, WebList& web,
                        StationManagerLink& manager) {
    main.on_click("Stn_Mgr", [&manager](int) { manager.Stn_Mgr_Click(); });
    main.on_click("WebR_Wiz", [&web](int) { web.WebR_Wiz_Click(); });
    main.on_click("Get_Email", [&mail](int) { mail.Form_Load(); });
    main.on_click("Request_list", [&request](int) {
        if (request.Visible) {
            request.Visible = false;
            return;
        }
        request.Left = 0;
        request.Top = 0;
        if (!request.Loaded) request.Form_Load();
        request.Visible = true;
    });
}

void wire_request_window(Station& station, QXMain& main, Request& request, Mailfrm& mail,
                         StationManagerLink& manager, Playback& playback, frmViewer& viewer) {
    request.PlayState = [&playback](int slot) {
        return slot >= 1 && slot <= kPlayers ? playback.Players(slot).PlayState() : 0;
    };
    request.TimerViewer = [&playback, &viewer](bool on) {
        if (viewer.Loaded) playback.TimerViewer().SetEnabled(on);
    };
    request.Run_Command = [&playback] { playback.Run(); };
    request.CheckTime = [&station, &main, &request, &playback] {
        const NowPlaying players{
            [&playback] { return playback.Players(7).PlayState() == MediaPlayer::kPlaying; },
            [&playback](const std::string& title) { playback.Player_Forms(7).Caption = title; }};
        CheckTime(station, request.DataTcheck, main, players);
    };
    request.Video_On = [&viewer] { return viewer.VidButt.Caption == "Video On"; };
    request.Video_Off = [&viewer, &playback] {
        if (viewer.VidButt.Caption == "Video On") playback.VidButt_Click();
    };
    request.on_click("Command7", [&playback](int) { playback.Break_Click(); });

    playback.request.form = &request;
    playback.request.list = &request.Frame1;
    playback.request.label = &request.Label17;
    playback.request.break_button = &request.Command7;
    playback.request.picture = &request.Image1;
    playback.request.refresh = [&request] { request.datPrimaryRS.Refresh(); };
    playback.request.flash = [&request](bool on) {
        request.Flash = on;
        request.Shape1.BackColor = on ? kYellow : kButtonFace;
    };
    playback.station_port.SM_Check = [&manager] { manager.SM_Check(); };
    playback.station_port.save_internet = [&mail] {
        if (mail.Loaded && mail.Visible) mail.TQXi_Sav();
    };
}

}  // namespace tavora
