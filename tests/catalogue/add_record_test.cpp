#include <algorithm>
#include <fstream>

#include "catalogue/file_names.h"
#include "catalogue_fixture.h"
#include "station/station_app.h"

namespace tavora {
namespace {

TEST(BaseName, CutsTheEndingAndSixFolders) {
    for (const auto& [file, base] : {
             std::pair{"c:\\music\\Song - Band.mp3", "Song - Band"},
             {"d:\\a\\b\\c\\d\\Song.wav", "Song"},
             // Counting the drive, seven folders leave the last one in the name.
             {"c:\\1\\2\\3\\4\\5\\6\\Song - Band.mp3", "6\\Song - Band"},
             // The ending's length follows the first backslash: here two characters go.
             {"\\\\server\\share\\Song.mp3", "Song.m"},
             {"c:\\Song.mpeg", "Song."},
         })
        EXPECT_EQ(Base_Name(file), base) << file;
}

TEST(BaseName, SplitsAtTheFirstDashKeepingTheBlank) {
    const NameParts named = Split_Name("Song - Band - Live");
    EXPECT_EQ(named.front, "Song ");
    EXPECT_EQ(named.back, "Band - Live");
    const NameParts plain = Split_Name("Song");
    EXPECT_EQ(plain.front, "");
    EXPECT_EQ(plain.back, "ng");
}

using AddOne = CatalogueTest;

TEST_F(AddOne, NamesTheRecordFromTheFileInEitherOrder) {
    const std::string file = dos(place("short.mp3", "music/Song - Band.mp3"));
    add_file(file);
    db->set("Combo6", -1, "Artist");
    add_file(file);
    ASSERT_EQ(count(), 2);
    EXPECT_EQ(fields_of(1, {"Title", "Artist", "Long title", "Size", "Mix Out"}),
              "Song |Band|" + file + "|6|6");
    // The engine's length, so the first play needs no repair.
    EXPECT_NEAR(field(1, "Length").number() * 86400, 2.0, 0.05);
    EXPECT_EQ(fields_of(2, {"Title", "Artist"}), "Band|Song ");
    EXPECT_EQ(db->Label9.Caption, "Artist - Title");
}

TEST_F(AddOne, NameOutsideTheConventionGoesThroughBothInputBoxes) {
    const auto file = place("short.mp3", "music/It's; DROP TABLE x.mp3");
    fake.dialogs.QueueText(dos(file));
    fake.dialogs.QueueText("My Title");
    fake.dialogs.Queue(Answer::Cancel);  // no artist given: the base name
    db->cmdAdd_Click();

    const auto& shown = fake.dialogs.shown();
    ASSERT_EQ(shown.size(), 3u);
    EXPECT_EQ(shown[1].request.title, "Enter Title");
    EXPECT_EQ(shown[1].request.default_text, "It's; DROP TABLE x");
    EXPECT_EQ(shown[2].request.title, "Enter Artist");
    ASSERT_EQ(count(), 1);
    EXPECT_EQ(fields_of(1, {"Title", "Artist"}), "My Title|It's; DROP TABLE x");
}

TEST_F(AddOne, AsxWarnsOnlyInAllCapitalsOrAllSmall) {
    for (const char* name : {"a - b.asx", "c - d.ASX", "e - f.Asx"})
        add_file(dos(place("short.mp3", std::string("music/") + name)));
    const auto said = texts();
    EXPECT_EQ(std::count(said.begin(), said.end(), kAsxWarning), 2);
    EXPECT_EQ(count(), 3);
}

TEST_F(AddOne, CancelAndMissingFileSayFileOpenErrorAndAddNothing) {
    answer({Answer::Cancel});
    db->cmdAdd_Click();
    add_file("c:\\tavora\\music\\gone - away.mp3");
    EXPECT_EQ(count(), 0);
    ASSERT_EQ(texts().size(), 4u);
    EXPECT_EQ(texts()[1], "File open error.");
    EXPECT_EQ(texts()[3], "File open error.");
    EXPECT_EQ(fake.dialogs.shown()[3].request.title, "File Load Error");
}

TEST_F(AddOne, InternetShortcutTakesItsLinkOrIsRefused) {
    std::ofstream(home() / "good - link.url") << "[InternetShortcut]\r\nURL=http://radio/x.mp3\r\n";
    std::ofstream(home() / "junk.url") << "[InternetShortcut]\r\n\x01\x02garbage\xff.exe\r\n";
    add_file("c:\\tavora\\good - link.url");
    add_file("c:\\tavora\\junk.url");
    ASSERT_EQ(count(), 1);
    EXPECT_EQ(fields_of(1, {"Long title", "Title"}), "http://radio/x.mp3|good ");
    EXPECT_TRUE(shown("Invalid File Type Referenced! exe"));
    EXPECT_TRUE(shown("File open error."));
}

TEST_F(AddOne, CloneCopiesTheMastersSettingsAndTheWizardOverrulesThem) {
    const long long master = add_row("Master", "c:\\m.mp3");
    set_fields(master,
               {{"Category", "Rock"}, {"Max Play Day", 9}, {"FadeIn", Value::boolean(true)}});
    db->Data1.Refresh();
    db->CommandClone_Click();
    add_file(dos(place("short.mp3", "music/New - One.mp3")));

    db->Wizard.Form_Load();
    db->Wizard.DBCombo2.Text = "Ballad";
    db->Wizard.click("CmdSnipit");
    db->Wiz_On = 1;
    db->Wiz_File = dos(place("short.mp3", "music/Wiz - Two.mp3"));
    db->cmdAdd_Click();

    EXPECT_EQ(fields_of(2, {"Category", "Max Play Day", "FadeIn"}), "Rock|9|True");
    // FadeIn is not the wizard's to say.
    EXPECT_EQ(fields_of(3, {"Category", "Type", "Max Play Day", "Max Month", "Source",
                            "Min Time Between Plays", "Valid End Time", "Valid Sunday", "FadeIn"}),
              "Always|Ballad|1|20|Snipit|4:00:00 AM|11:59:59 PM|True|True");
}

class Wizard : public CatalogueTest {
  protected:
    // The folder panel pointed at `folder` and the wizard's window loaded.
    void open_wizard(const std::string& folder) {
        db->Mnu_Aut_Add_Click();
        db->set("Dir1", -1, dos(home() / folder));
        db->click("SrchGo");
    }
};

TEST_F(Wizard, AllModeAddsTheWizardsTypesOnceEach) {
    place("short.mp2", "in/Clip - One.mpa");
    place("short.mp2", "in/Movie - Two.mpeg");
    place("short.mp3", "in/Song - Three.mp3");
    place("short.mp3", "in/Known - Four.mp3");
    add_row("Known", dos(home() / "IN/known - FOUR.MP3"));
    open_wizard("in");
    answer({Answer::Yes, Answer::No});  // all new selections, no other folder
    db->Wizard.click("Command1");

    ASSERT_EQ(count(), 3);
    // Patterns are taken in order: mp3 before mpa.
    EXPECT_EQ(field(2, "Title").text(), "Song ");
    EXPECT_EQ(field(3, "Long title").text(), dos(home() / "in/Clip - One.mpa"));
    EXPECT_TRUE(shown("2 Records were ADDED from this Folder"));
    EXPECT_TRUE(
        shown("We have moved you to the last record added.\r\nYou can now edit the cue points for "
              "these new selections.\r\nMove the database pointer backward (<) and edit until your "
              "edits are complete."));
    EXPECT_EQ(db->Wizard.Label1.Caption, "Complete");
    EXPECT_EQ(db->tab(), 4);
    EXPECT_EQ(db->Wiz_On, 0);
    EXPECT_EQ(fake.dialogs.pending(), 0u);
}

TEST_F(Wizard, CancelAtTheStartAddsNothingAndAtOneFileKeepsWhatWasAdded) {
    for (const char* name : {"A - 1", "B - 2", "C - 3"})
        place("short.mp3", std::string("in/") + name + ".mp3");
    open_wizard("in");
    answer({Answer::Cancel});
    db->Wizard.click("Command1");
    EXPECT_EQ(count(), 0);
    EXPECT_EQ(texts().back(), "Sorry That You Feel That Way");

    // Ask for each file: A yes, B no, C cancel, the end of the wizard.
    answer({Answer::No, Answer::Yes, Answer::No, Answer::Cancel});
    db->Wizard.click("Command1");
    ASSERT_EQ(count(), 1);
    EXPECT_EQ(field(1, "Title").text(), "A ");
    EXPECT_EQ(texts().back(), "Sorry That You Feel That Way");
    EXPECT_TRUE(db->Wizard.Command1.Visible);
    EXPECT_EQ(db->Wiz_On, 0);
    EXPECT_FALSE(shown("1 Records were ADDED from this Folder"));
}

TEST_F(Wizard, TooSmallLibraryOpensTheWizardFromTheRunCommand) {
    StationApp app(fake.services);
    ASSERT_TRUE(app.Sub_Main());
    app.qx_main.click("mnu_File_Run");
    const auto& shown = fake.dialogs.shown();
    ASSERT_GE(shown.size(), 2u);
    EXPECT_EQ(shown.back().request.text.rfind("Select a DRIVE and Folder to autoload from", 0), 0u);
    EXPECT_TRUE(app.tavora_db.DFrame.Visible);
    EXPECT_TRUE(app.tavora_db.Visible);
    ASSERT_NE(app.form("AdWiz"), nullptr);
    app.tavora_db.click("SrchGo");
    EXPECT_TRUE(app.form("AdWiz")->Visible);
}

}  // namespace
}  // namespace tavora
