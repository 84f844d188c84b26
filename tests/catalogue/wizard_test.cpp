#include "catalogue_fixture.h"
#include "station/station_app.h"

namespace tavora {
namespace {

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
    place("short.mp3", "in/A - 1.mp3");
    place("short.mp3", "in/B - 2.mp3");
    place("short.mp3", "in/C - 3.mp3");
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
    EXPECT_EQ(shown[shown.size() - 2].request.title, "NOT ENOUGH RECORDS!");
    EXPECT_EQ(shown.back().request.text.rfind("Select a DRIVE and Folder to autoload from", 0), 0u);
    EXPECT_TRUE(app.tavora_db.DFrame.Visible);
    EXPECT_TRUE(app.tavora_db.Visible);
    ASSERT_NE(app.form("AdWiz"), nullptr);
    app.tavora_db.click("SrchGo");
    EXPECT_TRUE(app.form("AdWiz")->Visible);
}

}  // namespace
}  // namespace tavora
