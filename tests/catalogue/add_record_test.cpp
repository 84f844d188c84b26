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
    const auto file = place("short.mp3", "music/Song - Band.mp3");
    fake.dialogs.QueueText(dos(file));
    db->cmdAdd_Click();
    db->set("Combo6", -1, "Artist");
    fake.dialogs.QueueText(dos(file));
    db->cmdAdd_Click();

    Recordset all = rows();
    ASSERT_EQ(all.RecordCount(), 2);
    EXPECT_EQ(all.Fields("Title").text(), "Song ");
    EXPECT_EQ(all.Fields("Artist").text(), "Band");
    EXPECT_EQ(all.Fields("Long title").text(), dos(file));
    EXPECT_EQ(all.Fields("Size").number(), 6);
    EXPECT_EQ(all.Fields("Mix Out").number(), 6);
    // The engine's length, so the first play needs no repair.
    EXPECT_NEAR(all.Fields("Length").number() * 86400, 2.0, 0.05);
    all.MoveNext();
    EXPECT_EQ(all.Fields("Title").text(), "Band");
    EXPECT_EQ(all.Fields("Artist").text(), "Song ");
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
    Recordset all = rows();
    ASSERT_EQ(all.RecordCount(), 1);
    EXPECT_EQ(all.Fields("Title").text(), "My Title");
    EXPECT_EQ(all.Fields("Artist").text(), "It's; DROP TABLE x");
}

TEST_F(AddOne, AsxWarnsOnlyInAllCapitalsOrAllSmall) {
    for (const char* name : {"a - b.asx", "c - d.ASX", "e - f.Asx"}) {
        const auto file = place("short.mp3", std::string("music/") + name);
        fake.dialogs.QueueText(dos(file));
        db->cmdAdd_Click();
    }
    long warnings = 0;
    for (const auto& text : texts())
        warnings += text == kAsxWarning;
    EXPECT_EQ(warnings, 2);
    EXPECT_EQ(count(), 3);
}

TEST_F(AddOne, CancelAndMissingFileSayFileOpenErrorAndAddNothing) {
    fake.dialogs.Queue(Answer::Cancel);
    db->cmdAdd_Click();
    fake.dialogs.QueueText("c:\\tavora\\music\\gone - away.mp3");
    db->cmdAdd_Click();
    EXPECT_EQ(count(), 0);
    ASSERT_EQ(texts().size(), 4u);
    EXPECT_EQ(texts()[1], "File open error.");
    EXPECT_EQ(texts()[3], "File open error.");
    EXPECT_EQ(fake.dialogs.shown()[3].request.title, "File Load Error");
}

TEST_F(AddOne, InternetShortcutTakesItsLinkOrIsRefused) {
    std::ofstream(home() / "good - link.url") << "[InternetShortcut]\r\nURL=http://radio/x.mp3\r\n";
    std::ofstream(home() / "junk.url") << "[InternetShortcut]\r\n\x01\x02garbage\xff.exe\r\n";
    fake.dialogs.QueueText("c:\\tavora\\good - link.url");
    db->cmdAdd_Click();
    fake.dialogs.QueueText("c:\\tavora\\junk.url");
    db->cmdAdd_Click();

    Recordset all = rows();
    ASSERT_EQ(all.RecordCount(), 1);
    EXPECT_EQ(all.Fields("Long title").text(), "http://radio/x.mp3");
    EXPECT_EQ(all.Fields("Title").text(), "good ");
    EXPECT_TRUE(shown("Invalid File Type Referenced! exe"));
    EXPECT_TRUE(shown("File open error."));
}

TEST_F(AddOne, CloneCopiesTheMastersSettingsAndTheWizardOverrulesThem) {
    const long long master = add_row("Master", "c:\\m.mp3");
    {
        Recordset table = OpenRecordset(db->Data1.Recordset().library(), "Recordings1");
        table.Requery();
        table.SetBookmark(Value(static_cast<double>(master)));
        table.Edit();
        table.SetField("Category", Value("Rock"));
        table.SetField("Max Play Day", Value(9));
        table.SetField("FadeIn", Value::boolean(true));
        table.Update();
    }
    db->Data1.Refresh();
    db->CommandClone_Click();
    const auto file = place("short.mp3", "music/New - One.mp3");
    fake.dialogs.QueueText(dos(file));
    db->cmdAdd_Click();

    db->Wizard.Form_Load();
    db->Wizard.DBCombo2.Text = "Ballad";
    db->Wizard.click("CmdSnipit");
    db->Wiz_On = 1;
    db->Wiz_File = dos(place("short.mp3", "music/Wiz - Two.mp3"));
    db->cmdAdd_Click();

    Recordset all = rows();
    all.MoveNext();
    EXPECT_EQ(all.Fields("Category").text(), "Rock");
    EXPECT_EQ(all.Fields("Max Play Day").number(), 9);
    EXPECT_TRUE(all.Fields("FadeIn").truthy());
    all.MoveNext();
    EXPECT_EQ(all.Fields("Category").text(), "Always");
    EXPECT_EQ(all.Fields("Type").text(), "Ballad");
    EXPECT_EQ(all.Fields("Max Play Day").number(), 1);
    EXPECT_EQ(all.Fields("Max Month").number(), 20);
    EXPECT_EQ(all.Fields("Source").text(), "Snipit");
    EXPECT_NEAR(all.Fields("Min Time Between Plays").number(), 4.0 / 24, 1e-9);
    EXPECT_NEAR(all.Fields("Valid End Time").number(), TimeSerial(23, 59, 59), 1e-9);
    EXPECT_TRUE(all.Fields("Valid Sunday").truthy());
    EXPECT_TRUE(all.Fields("FadeIn").truthy());  // not the wizard's to say
}

}  // namespace
}  // namespace tavora
