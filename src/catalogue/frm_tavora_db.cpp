#include "catalogue/frm_tavora_db.h"

#include "platform/path_map.h"
#include "runtime/strings.h"

namespace tavora {

namespace {

// Buttons of the editor and what each runs.
struct Button {
    const char* name;
    const char* caption;
    void (frmTavoraDb::*click)();
};

constexpr Button kButtons[] = {
    {"cmdAdd", "&Add 1Rec", &frmTavoraDb::cmdAdd_Click},
    {"Command3", "Auto Add", &frmTavoraDb::Mnu_Aut_Add_Click},
    {"SrchGo", "Continue Wizard", &frmTavoraDb::SrchGo_Click},
    {"ValidFilesBtn", "Validate Files", &frmTavoraDb::ValidFilesBtn_Click},
    {"CmdRepAll", "Repair Drive", &frmTavoraDb::CmdRepAll_Click},
    {"cmdRefresh", "&Repair", &frmTavoraDb::cmdRefresh_Click},
    {"cmdNext", "&.>Next", &frmTavoraDb::cmdNext_Click},
    {"CmdPrev", "Prev<&,", &frmTavoraDb::CmdPrev_Click},
    {"PrevLtr", "Prev Letter", &frmTavoraDb::PrevLtr_Click},
    {"NextLtr", "Next Letter", &frmTavoraDb::NextLtr_Click},
    {"TitleSrcBtn", "Search By Title", &frmTavoraDb::TitleSrcBtn_Click},
    {"ArtistSrcBtn", "Search By Artist", &frmTavoraDb::ArtistSrcBtn_Click},
    {"cmdUpdate", "&Update", &frmTavoraDb::cmdUpdate_Click},
    {"cmdDelete", "&Delete", &frmTavoraDb::cmdDelete_Click},
    {"CommandClone", "Clone", &frmTavoraDb::CommandClone_Click},
    {"Command2", "Paste Clone Info", &frmTavoraDb::Command2_Click},
    {"CmdFindClone", "Find Clone", &frmTavoraDb::CmdFindClone_Click},
    {"Command7", "Paste Mix Default", &frmTavoraDb::Command7_Click},
    {"ClrReq", "Clear Requests", &frmTavoraDb::ClrReq_Click},
    {"CmdNormal", "Normal", &frmTavoraDb::CmdNormal_Click},
    {"BtnRand", "Random", &frmTavoraDb::BtnRand_Click},
    {"SetStart", "Set Start", &frmTavoraDb::SetStart_Click},
    {"SetMixIn", "Set Mix In", &frmTavoraDb::SetMixIn_Click},
    {"SetMixOut", "Set MixOut", &frmTavoraDb::SetMixOut_Click},
    {"SetEnd", "Set End", &frmTavoraDb::SetEnd_Click},
    {"TestStart", "Test Start", &frmTavoraDb::TestStart_Click},
    {"TestMixIn", "Test Mix In", &frmTavoraDb::TestMixIn_Click},
    {"TestMixOut", "Test MixOut", &frmTavoraDb::TestMixOut_Click},
    {"TestEnd", "Test End", &frmTavoraDb::TestEnd_Click},
};

struct Indexed {
    const char* name;
    std::vector<const char*> captions;
    void (frmTavoraDb::*click)(int);
};

const Indexed kIndexed[] = {
    {"CmpPst",
     {"2/14/56", "2/7/30", "1/5/20", "2/3/10", "1/1/5", "Recall", "Save"},
     &frmTavoraDb::CmpPst_Click},
    {"Command8",
     {"Clear Request Counts", "Clear Open Requests", "Limit Open Requests"},
     &frmTavoraDb::Command8_Click},
    {"CmdCht", {"Calc", "Rst", ">", "<", "Top40", "Country", "Dance"}, &frmTavoraDb::CmdCht_Click},
    {"ClrAll", {"Clear Top40", "Clear AC", "Clear Dance"}, &frmTavoraDb::ClrAll_Click},
};

constexpr const char* kSortButtons[] = {
    "SortTitle",      "SortArtist",   "SortNone", "SortRequest", "SortSpecial", "SortTop40",
    "SortTopCountry", "SortTopDance", "Command4", "Command5",    "Command6"};

constexpr const char* kKinds[] = {"CmdDaily",      "CmdSnipit",   "CmdTop40",
                                  "CmdTopCountry", "CmdTopDance", "CmdTopRequest"};

}  // namespace

frmTavoraDb::frmTavoraDb(Station& station, const Services& services, LibraryPool& pool)
    : Form("frmTavoraDb"),
      Data1(pool),
      Data2(pool),
      Data3(pool),
      DataSearch(pool),
      station_(station),
      services_(services),
      pool_(pool),
      ap_timer_(services.loop.CreateTimer([this] { APTimer_Timer(); })) {
    Caption = "PROGRAM DIRECTOR Tavora Music System";
    Data1.RecordSource = "Recordings1";
    Data2.RecordSource = "Type Lookup";
    DataSearch.RecordSource = "Recordings1";
    ap_timer_->SetInterval(300);
    for (const char* tab : {"Records", "Search", "Settings", "The Charts", "Preview", "Tools"})
        SSTab1.AddItem(tab);
    SSTab1.ListIndex = 0;
    Combo6.AddItem("Title");
    Combo6.AddItem("Artist");
    Combo6.ListIndex = 0;
    Label9.Caption = "Title - Artist";
    for (int index : {9, 18, 33, 48})
        add_text("txtFields", index);
    txtFields(9).Text = "6";
    txtFields(18).Text = "6";
    txtFields(33).ToolTipText = "Set Playing Volume";
    for (const char* name : kSortButtons)
        add(name);
    for (const Indexed& array : kIndexed) {
        for (std::size_t i = 0; i < array.captions.size(); ++i) {
            Control* button = find(array.name, static_cast<int>(i));
            if (!button) button = &add(array.name, static_cast<int>(i));
            button->Caption = array.captions[i];
        }
    }
    for (const Button& button : kButtons) {
        if (!find(button.name)) add(button.name);
        find(button.name)->Caption = button.caption;
    }
    add("Command1").Caption = "New Category / Genre";
    add("VolUpDn").ToolTipText = "Change Playing Volume";
    find("ClrAll", 0)->ToolTipText = "Clears chart positions to zero";
    ChartBox.ToolTipText = "Any number selection will have a X2 factor for Max Play Limit";
    frmPlaybackRate.Caption = "Change Playback Rate";
    Slider1.Text = "5";
    Command2.Visible = false;
    add_text("txtLength");
    add_text("Combo1");
    add("LblPreview");
    wire_controls();
}

void frmTavoraDb::attach_preview(std::unique_ptr<MediaPlayer> player) {
    ActiveMoviePreview = std::move(player);
    if (ActiveMoviePreview)
        ActiveMoviePreview->ReadyStateChange = [this] { ActiveMoviePreview_ReadyStateChange(); };
}

frmTavoraDb::~frmTavoraDb() = default;

void frmTavoraDb::wire_controls() {
    for (const Button& button : kButtons) {
        const auto click = button.click;
        on_click(button.name, [this, click](int) { (this->*click)(); });
    }
    for (const Indexed& array : kIndexed) {
        const auto click = array.click;
        on_click(array.name, [this, click](int index) { (this->*click)(index); });
    }
    for (const char* name : kSortButtons)
        on_click(name, [this, name](int) { Sort_Click(name); });
    for (const char* name : kKinds)
        on_click(name, [this, name](int) { Convert_Click(name); });
    on_click("Command1", [this](int) {
        if (hooks.open_type_lookup) hooks.open_type_lookup();
    });
    on("Command1", "LostFocus", [this](int) { Data2.Refresh(); });
    on_click("Combo6", [this](int) {
        Label9.Caption = Combo6.selected_text() == "Title" ? "Title - Artist" : "Artist - Title";
    });
    on_click("SSTab1", [this](int) { show_tab(SSTab1.ListIndex); });
    on("DBComboTitleSrch", "Change",
       [this](int) { Search_Change("Title", DBComboTitleSrch.Text); });
    on("DBComboArtistSearch", "Change",
       [this](int) { Search_Change("Artist", DBComboArtistSearch.Text); });
    on("txtFields", "Change", [this](int index) {
        if (index == 48) VolUpDn_Change();
    });
    on("Slider1", "Change", [this](int) { Slider1_Change(); });
    Wizard.on_click("Command1", [this](int) { Speed_Load(); });
    add_data("Data1", Data1, [this] { Data1_Reposition(); });
}

void frmTavoraDb::Form_Load() {
    Loaded = true;
    Visible = true;
    for (DataControl* data : {&Data1, &Data2, &DataSearch})
        data->DatabaseName = native(station_.Act_Db);
    Data1.Refresh();
    Data2.Refresh();
    read_aliases();
    Data1_Reposition();
}

std::shared_ptr<Library> frmTavoraDb::library() {
    return Data1.Recordset().library();
}

std::string frmTavoraDb::native(const std::string& dos) const {
    return services_.paths.ToNative(dos).path;
}

std::string frmTavoraDb::net_file(const std::string& name, int rev_drive) {
    station_.Rev_Drive = rev_drive;
    std::string mapped = Net_File(station_, aliases, name);
    station_.Rev_Drive = 0;
    return mapped;
}

void frmTavoraDb::read_aliases() {
    aliases.clear();
    auto settings = pool_.open(services_.paths.install_folder() / "Setup.mdb", FileKind::Settings);
    if (!settings.library) return;
    Recordset rows = OpenRecordset(settings.library, "DriveLookup");
    rows.Requery();
    for (rows.MoveFirst(); !rows.IsEOF(); rows.MoveNext())
        aliases.push_back({rows.Fields("AliasDrive").text(), rows.Fields("Drive").text()});
}

}  // namespace tavora
