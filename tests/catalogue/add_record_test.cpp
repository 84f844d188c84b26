#include <algorithm>
#include <fstream>

#include "catalogue/file_names.h"
#include "catalogue_fixture.h"

namespace tavora {
namespace {

TEST(BaseName, CutsTheEndingAndSixFolders) {
    struct Case {
        const char* file;
        const char* base;
    };
    const Case cases[] = {
        {"c:\\music\\Song - Band.mp3", "Song - Band"},
        {"d:\\a\\b\\c\\d\\Song.wav", "Song"},
        // Counting the drive, seven folders leave the last one in the name.
        {"c:\\1\\2\\3\\4\\5\\6\\Song - Band.mp3", "6\\Song - Band"},
        // The ending's length follows the first backslash: here two characters go.
        {"\\\\server\\share\\Song.mp3", "Song.m"},
        {"c:\\Song.mpeg", "Song."},
    };
    for (const Case& one : cases)
        EXPECT_EQ(Base_Name(one.file), one.base) << one.file;
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

}  // namespace
}  // namespace tavora
