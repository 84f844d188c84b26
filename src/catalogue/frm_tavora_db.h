#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "catalogue/ad_wiz.h"
#include "catalogue/catalogue_ports.h"
#include "core/forms/form.h"
#include "core/services.h"
#include "core/settings/net_file.h"
#include "core/station.h"
#include "platform/event_loop.h"
#include "playback/media_player.h"
#include "store/data_control.h"

namespace tavora {

// The program director: the record editor, its searches and the tools that
// bring files into the library. Its data controls are the ones the rest of
// the system borrows: `Data1` for the editor, `Data3` for selection,
// `DataSearch` for searches.
class frmTavoraDb : public Form {
  public:
    frmTavoraDb(Station& station, const Services& services, LibraryPool& pool);
    ~frmTavoraDb() override;

    DataControl Data1;
    DataControl Data2;  // the categories
    DataControl Data3;
    DataControl DataSearch;
    AdWiz Wizard;
    CatalogueHooks hooks;
    // Put in by the front end; without it the Preview tab plays nothing.
    std::unique_ptr<MediaPlayer> ActiveMoviePreview;
    void attach_preview(std::unique_ptr<MediaPlayer> player);

    // The add step's state: `Wiz_On` 1 while the wizard (or the recorder)
    // feeds `Wiz_File`; `Clone_On` 1 while a master record is armed.
    int Wiz_On = 0;
    std::string Wiz_File;
    int Clone_On = 0;
    // The Max Plays preset the record editor saved.
    int Pre_Day = 1, Pre_Week = 2, Pre_Month = 4;
    std::string Url_Target;
    std::string Url_Check;
    int Cht_Pos = 1;
    // Set by the menus: every library path a file dialog may give is in
    // this form (DOS). Filled from DriveLookup at load.
    std::vector<DriveAlias> aliases;

    // Points the window at `Act_Db` and refreshes it.
    void Form_Load();

    // Adding.
    void cmdAdd_Click();
    void Url_Chk(const std::string& file);
    void Mnu_Aut_Add_Click();
    void SrchGo_Click();
    // Walks the folder in `Dir1`; returns how many records were added.
    int Speed_Load();
    void Asf_Add();
    // All-mode adds without questions, as `tavora --add` runs the wizard:
    // the file (DOS form) is added by the wizard's rules unless a record
    // has it already. `Title`/`Artist` from tags win over the input boxes'
    // defaults when given. True when a row was added.
    struct AddOutcome {
        enum Kind { Added, Duplicate, NotMedia, Failed } kind;
        std::string why;
    };
    AddOutcome add_new_file(const std::string& dos_file, const std::string& tag_title = {},
                            const std::string& tag_artist = {});
    // Prepares the case-blind set of library paths the duplicate test uses.
    void load_known_files();

    // Bulk tools.
    void QX_Imp();
    void ValidFilesBtn_Click();
    void CmdRepAll_Click();
    void cmdRefresh_Click();

    // The record editor.
    void Data1_Reposition();
    void cmdNext_Click();
    void CmdPrev_Click();
    void PrevLtr_Click();
    void NextLtr_Click();
    void Sort_Click(const std::string& button);
    void SortNone_Click() { Sort_Click("SortNone"); }
    void Command5_Click() { Sort_Click("Command5"); }
    void TitleSrcBtn_Click() { search_by("Title"); }
    void ArtistSrcBtn_Click() { search_by("Artist"); }
    void Search_Change(const std::string& field, const std::string& text);
    void cmdUpdate_Click();
    void cmdDelete_Click();
    void CommandClone_Click();
    void Command2_Click();  // paste the clone's settings
    void CmdFindClone_Click();
    void CmpPst_Click(int index);
    void Command7_Click();
    void Command8_Click(int index);
    void ClrReq_Click();
    void Convert_Click(const std::string& button);
    void CmdNormal_Click();
    void Snipit_Clear();
    void BtnRand_Click();

    // Charts.
    void CmdCht_Click(int index);
    void ClrAll_Click(int index);

    // The cue-point editor.
    // Brings a tab to the front, as a click on it does.
    void show_tab(int tab);
    void SSTab1_Click(int previous_tab);
    int tab() const { return SSTab1.ListIndex; }
    void SetStart_Click();
    void SetMixIn_Click();
    void SetMixOut_Click();
    void SetEnd_Click();
    void TestStart_Click();
    void TestMixIn_Click();
    void TestMixOut_Click();
    void TestEnd_Click();
    void Preview_Reset();
    void VolUpDn_Change();
    void Slider1_Change();
    void ActiveMoviePreview_ReadyStateChange();
    void APTimer_Timer();
    bool APTimer_Enabled() const { return ap_timer_->Enabled(); }

    Control& txtFields(int index) { return *find("txtFields", index); }

    Control& SSTab1 = add_list("SSTab1");
    Control& Combo6 = add_list("Combo6");
    Control& Label9 = add("Label9");
    Control& Label5 = add("Label5");
    Control& Label6 = add("Label6");
    Control& Label7 = add("Label7");
    Control& Label10 = add("Label10");
    Control& LabelSpecial = add("LabelSpecial");
    Control& LblStatus = add("LblStatus");
    Control& DFrame = add("DFrame");
    Control& Dir1 = add_text("Dir1");  // the folder, in DOS form
    Control& SrchGo = add("SrchGo");
    Control& Data1Caption = add("Data1");
    Control& cmdAdd = add("cmdAdd");
    Control& Command3 = add("Command3");
    Control& cmdRefresh = add("cmdRefresh");
    Control& BtnRand = add("BtnRand");
    Control& CmdNormal = add("CmdNormal");
    Control& CmdDaily = add("CmdDaily");
    Control& CmdSnipit = add("CmdSnipit");
    Control& CmdTop40 = add("CmdTop40");
    Control& CmdTopCountry = add("CmdTopCountry");
    Control& CmdTopDance = add("CmdTopDance");
    Control& CmdTopRequest = add("CmdTopRequest");
    Control& ChartBox = add("Frame3");  // "Chart Positions"
    Control& PrevLtr = add("PrevLtr");
    Control& NextLtr = add("NextLtr");
    Control& CommandClone = add("CommandClone");
    Control& Command2 = add("Command2");
    Control& CmdCht0 = add("CmdCht", 0);
    Control& DBComboTitleSrch = add_text("DBComboTitleSrch");
    Control& DBComboArtistSearch = add_text("DBComboArtistSearch");
    Control& frmPlaybackRate = add("frmPlaybackRate");
    Control& Slider1 = add_text("Slider1");

  private:
    std::shared_ptr<Library> library();
    std::string native(const std::string& dos) const;
    std::string net_file(const std::string& name, int rev_drive);
    void read_aliases();
    bool wizard_feeding() const { return Wiz_On == 1 && Wizard.Visible; }
    void file_error();
    void name_fields(Recordset& row, const std::string& base);
    void copy_clone_settings(Recordset& row);
    void record_added(Recordset& row, const std::string& dos_file);
    void wizard_done(int added);
    void search_by(const std::string& field);
    void light_sort_button();
    void light_kind();
    void open_in_preview();
    // A CD or playlist row says why it can't be previewed.
    bool refused_for_preview(const std::string& path);
    // Each row of the search control, under the wait pointer, in one commit.
    void walk_search(const std::function<void(Recordset&)>& each);
    void edit_row(const char* field, const Value& value);
    void wire_controls();

    Station& station_;
    Services services_;
    LibraryPool& pool_;
    std::unique_ptr<Timer> ap_timer_;
    int shown_tab_ = 0;
    std::unordered_set<std::string> known_files_;  // lower case
    // Titles and artists given by tags for the file being added, and its
    // length when it was measured before the add.
    std::string tag_title_, tag_artist_;
    std::optional<double> known_length_;
    Value clone_master_;  // the row whose settings a paste copies
};

}  // namespace tavora
