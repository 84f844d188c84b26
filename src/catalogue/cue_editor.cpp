#include <cmath>

#include "catalogue/frm_tavora_db.h"
#include "platform/dialogs.h"
#include "runtime/convert.h"
#include "runtime/strings.h"

namespace tavora {

namespace {

constexpr int kPreviewTab = 4;

double number(Recordset& row, const char* field) {
    return row.Fields(field).number();
}

}  // namespace

void frmTavoraDb::show_tab(int tab) {
    const int previous = shown_tab_;
    SSTab1.ListIndex = tab;
    shown_tab_ = tab;
    SSTab1_Click(previous);
}

void frmTavoraDb::SSTab1_Click(int /*previous_tab*/) {
    if (tab() != kPreviewTab) {
        ap_timer_->SetEnabled(false);
        return;
    }
    const std::string path = Data1.Recordset().Fields("Long title").text();
    if (refused_for_preview(path)) return show_tab(2);
    ap_timer_->SetEnabled(true);
    if (ActiveMoviePreview) ActiveMoviePreview->Open(native(net_file(path, 1)));
}

bool frmTavoraDb::refused_for_preview(const std::string& path) {
    if (tavora::Left(path, 2) == "CD") {
        services_.dialogs.MsgBox("You Cannot Edit a CD file, Use The CD Player to Edit.",
                                 Buttons::OKOnly, "Edit On CD Not Allowed");
        return true;
    }
    if (tavora::Left(path, 4) == "QXPL") {
        services_.dialogs.MsgBox("You Cannot Edit a PLAY LIST file, Use The JukeBox to Edit.",
                                 Buttons::OKOnly, "Edit On Play List Not Allowed");
        return true;
    }
    return false;
}

void frmTavoraDb::open_in_preview() {
    if (!ActiveMoviePreview || ActiveMoviePreview->PlayState() != MediaPlayer::kStopped) return;
    Recordset& row = Data1.Recordset();
    const std::string file = native(net_file(row.Fields("Long title").text(), 1));
    if (file == ActiveMoviePreview->FileName()) return;
    ActiveMoviePreview->Open(file);
    find("LblPreview")->Caption = "Setup READY for: " + row.Fields("Title").text();
}

void frmTavoraDb::edit_row(const char* field, const Value& value) {
    Recordset& row = Data1.Recordset();
    if (!row.Edit()) return;
    row.SetField(field, value);
    row.Update();
}

void frmTavoraDb::SetStart_Click() {
    if (!ActiveMoviePreview) return;
    const double at = ActiveMoviePreview->CurrentPosition();
    Recordset& row = Data1.Recordset();
    if (!row.Edit()) return;
    row.SetField("Start Pos", Value(at));
    row.SetField("Size", Value(at + 3.0));  // the mix-in follows three seconds behind
    row.Update();
}

void frmTavoraDb::SetMixIn_Click() {
    if (ActiveMoviePreview) edit_row("Size", Value(ActiveMoviePreview->CurrentPosition()));
}

void frmTavoraDb::SetMixOut_Click() {
    if (!ActiveMoviePreview) return;
    edit_row("Mix Out",
             Value(ActiveMoviePreview->SelectionEnd() - ActiveMoviePreview->CurrentPosition()));
}

void frmTavoraDb::SetEnd_Click() {
    if (ActiveMoviePreview) edit_row("End Pos", Value(ActiveMoviePreview->CurrentPosition()));
}

void frmTavoraDb::Preview_Reset() {
    MediaPlayer& player = *ActiveMoviePreview;
    if (player.PlayState() == MediaPlayer::kPlaying) player.Stop();
    player.SelectionEnd(player.Duration());
    player.SelectionStart(0);
    player.Volume(-1);
}

void frmTavoraDb::TestStart_Click() {
    if (!ActiveMoviePreview) return;
    Preview_Reset();
    MediaPlayer& player = *ActiveMoviePreview;
    Recordset& row = Data1.Recordset();
    if (row.Fields("FadeIn").truthy()) player.Volume(-1500);
    player.SelectionStart(number(row, "Start Pos"));
    player.CurrentPosition(player.SelectionStart());
    player.play();
}

void frmTavoraDb::TestMixIn_Click() {
    if (!ActiveMoviePreview) return;
    Preview_Reset();
    MediaPlayer& player = *ActiveMoviePreview;
    Recordset& row = Data1.Recordset();
    if (row.Fields("FadeIn").truthy()) player.Volume(-1500);
    player.SelectionEnd(number(row, "Size"));
    player.CurrentPosition(number(row, "Start Pos"));
    player.SelectionStart(player.CurrentPosition());
    player.play();
}

void frmTavoraDb::TestMixOut_Click() {
    if (!ActiveMoviePreview) return;
    Preview_Reset();
    MediaPlayer& player = *ActiveMoviePreview;
    Recordset& row = Data1.Recordset();
    const double end = number(row, "End Pos");
    player.SelectionEnd(end != -1 ? end : player.Duration());
    const double from = player.SelectionEnd() - number(row, "Mix Out");
    player.CurrentPosition(from < 0 ? 0 : from);
    player.play();
}

void frmTavoraDb::TestEnd_Click() {
    if (!ActiveMoviePreview) return;
    Preview_Reset();
    MediaPlayer& player = *ActiveMoviePreview;
    Recordset& row = Data1.Recordset();
    const double end = number(row, "End Pos");
    const double duration = player.Duration();
    if (end != -1) player.SelectionEnd(end);
    if (end == -1 || end > duration) {
        player.SelectionEnd(duration);
        if (end > duration) edit_row("End Pos", Value(duration));
    }
    if (duration > 20) player.CurrentPosition(number(row, "End Pos") - 20);
    player.play();
}

void frmTavoraDb::VolUpDn_Change() {
    const double volume = Val(txtFields(48).Text);
    edit_row("StartVol", Value(volume));
    if (ActiveMoviePreview) ActiveMoviePreview->Volume(volume);
}

void frmTavoraDb::Slider1_Change() {
    const double rate = 0.1 * Val(Slider1.Text) + 0.5;
    if (ActiveMoviePreview) ActiveMoviePreview->Rate(rate);
    frmPlaybackRate.Caption = number_text(rate);
}

void frmTavoraDb::ActiveMoviePreview_ReadyStateChange() {
    Preview_Reset();
    if (number(Data1.Recordset(), "End Pos") == -1)
        edit_row("End Pos", Value(ActiveMoviePreview->Duration()));
}

void frmTavoraDb::APTimer_Timer() {
    if (!ActiveMoviePreview || ActiveMoviePreview->PlayState() != MediaPlayer::kPlaying) return;
    MediaPlayer& player = *ActiveMoviePreview;
    Recordset& row = Data1.Recordset();
    const double at = player.CurrentPosition();
    const double end = number(row, "End Pos");
    const double mix_in = number(row, "Size");
    const double mix_out = number(row, "Mix Out");
    const double start = number(row, "Start Pos");
    const double start_vol = number(row, "StartVol");
    double volume = player.Volume();
    // The preview draws the intended shape: straight lines at three ticks a
    // second, not the fader's curve on the air.
    if (row.Fields("FadeOut").truthy() && end - at < mix_out) volume -= 2000 / (3 * mix_out);
    if (row.Fields("FadeIn").truthy()) {
        if (at > mix_in && end - at > mix_out) volume = start_vol;
        // A mix-in at the start would divide by zero: that tick ends here.
        if (at < mix_in && mix_in != start) volume += (1500 - start_vol) / ((mix_in - start) * 3);
    }
    player.Volume(volume);
    txtFields(33).Text = std::to_string(static_cast<long>(std::lround(player.Volume())));
}

}  // namespace tavora
