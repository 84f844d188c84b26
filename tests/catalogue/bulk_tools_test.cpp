#include <fstream>

#include "catalogue/bulk_add.h"
#include "catalogue_fixture.h"
#include "offline_station.h"
#include "platform/file_ops.h"

namespace tavora {
namespace {

class BulkTools : public CatalogueTest {
  protected:
    // An installer's drop: a library of three rows in `folder`, named in
    // linstall.txt's last line but one.
    void drop_import(const std::string& folder) {
        const auto dir = home() / folder;
        std::filesystem::create_directories(dir);
        ASSERT_EQ(create_library_file(dir / "qximp.mdb", kCatalogueDay), "");
        auto from = Library::open(dir / "qximp.mdb", FileKind::Library).library;
        Recordset table = OpenRecordset(from, "Recordings1");
        for (const char* title : {"One", "Two", "Three"}) {
            table.AddNew();
            table.SetField("Title", Value(title));
            table.SetField("Long title", Value(std::string("d:\\imp\\") + title + ".mp3"));
            table.SetField("Max Month", Value(7));
            ASSERT_TRUE(table.Update());
        }
        std::ofstream(home() / "linstall.txt") << "junk\r\n" << dos(dir) << "\r\n\r\n";
    }

    std::string badlinks() { return audio::test::file_bytes((home() / "badlinks.txt").string()); }
};

TEST_F(BulkTools, ImportTakesEveryRowAndTwiceDoubles) {
    drop_import("drop");
    fake.dialogs.Queue(Answer::Yes);
    db->QX_Imp();
    EXPECT_EQ(count(), 3);
    EXPECT_FALSE(files::Exists(home() / "drop" / "qximp.mdb"));
    EXPECT_FALSE(files::Exists(home() / "linstall.txt"));
    EXPECT_EQ(texts().back().rfind("3 Records were ADDED from this database\r\n", 0), 0u);

    drop_import("drop");
    fake.dialogs.Queue(Answer::Yes);
    db->QX_Imp();
    // Numbered by this library.
    ASSERT_EQ(count(), 6);
    EXPECT_EQ(fields_of(6, {"Title", "Max Month"}), "Three|7");
}

TEST_F(BulkTools, RefusedImportKeepsOrDropsTheFilesAsAsked) {
    drop_import("drop");
    answer({Answer::No, Answer::Yes});  // the second keeps it for later
    db->QX_Imp();
    EXPECT_TRUE(files::Exists(home() / "drop" / "qximp.mdb"));
    EXPECT_TRUE(files::Exists(home() / "linstall.txt"));

    answer({Answer::No, Answer::No});
    db->QX_Imp();
    EXPECT_EQ(count(), 0);
    EXPECT_FALSE(files::Exists(home() / "drop" / "qximp.mdb"));
    EXPECT_TRUE(shown("You will have to manually add the selections at (" + dos(home() / "drop") +
                      "\\qximp.mdb)"));
    EXPECT_EQ(texts().back().rfind("0 Records were ADDED", 0), 0u);
}

TEST_F(BulkTools, DamagedImportFilesChangeNothing) {
    // Binary junk in the list: no folder, no question.
    std::ofstream(home() / "linstall.txt", std::ios::binary) << std::string("\x00\xff\x13z", 4);
    db->QX_Imp();
    EXPECT_TRUE(fake.dialogs.shown().empty());

    // A file that is no library is named and left alone.
    fake.folder.Write("drop/qximp.mdb", "not a database");
    std::ofstream(home() / "linstall.txt") << dos(home() / "drop") << "\r\n";
    db->QX_Imp();
    ASSERT_EQ(texts().size(), 1u);
    EXPECT_NE(texts()[0].find("can't be imported"), std::string::npos);
    EXPECT_TRUE(files::Exists(home() / "drop" / "qximp.mdb"));
    EXPECT_EQ(count(), 0);
}

TEST_F(BulkTools, ValidationWithTheDrivePromptCancelledChecksEveryRow) {
    const auto real = place("short.mp3", "music/here.mp3");
    add_row("Here", dos(real), "A");
    add_row("Gone", "c:\\tavora\\music\\gone.mp3", "B");
    add_row("Stream", "http://radio/x.mp3", "C");
    add_row("Elsewhere", "q:\\nowhere.mp3", "D");
    db->Data1.Refresh();
    answer({Answer::Yes, Answer::Cancel});
    db->click("ValidFilesBtn");
    EXPECT_EQ(badlinks(),
              "---- Database link Errors ----\r\n For: c:\\tavora\\qx1.mdb\r\n"
              "---\r\nc:\\tavora\\music\\gone.mp3\r\nGone\r\nB\r\n"
              "---\r\nq:\\nowhere.mp3\r\nElsewhere\r\nD\r\n"
              "======\r\nSearched: 4\r\nTotal Errors: 2\r\n");
    EXPECT_EQ(fake.launcher.opened, std::vector<std::string>{(home() / "badlinks.txt").string()});

    fake.dialogs.Queue(Answer::Yes);
    fake.dialogs.QueueText("Q");
    db->click("ValidFilesBtn");
    EXPECT_NE(badlinks().find("Searched: 1\r\nTotal Errors: 1"), std::string::npos);
}

TEST_F(BulkTools, DriveRepairRewritesEveryPathOnTheLetterInLowerCase) {
    add_row("One", "D:\\music\\one.mp3");
    add_row("Two", "d:\\two.mp3");
    add_row("Marker", "dQXPL");
    add_row("Other", "e:\\three.mp3");
    fake.dialogs.Queue(Answer::Yes);
    fake.dialogs.QueueText("d");
    fake.dialogs.QueueText("G");
    fake.dialogs.Queue(Answer::Yes);
    db->click("CmdRepAll");

    const char* const repaired[] = {"g:\\music\\one.mp3", "g:\\two.mp3", "g:XPL", "e:\\three.mp3"};
    for (long long id = 1; id <= 4; ++id)
        EXPECT_EQ(field(id, "Long title").text(), repaired[id - 1]);
    EXPECT_EQ(texts().back(),
              "COMPLETE! Drive (d) has been replaced with drive (G)\r\n3 Records "
              "were replaced");

    station.Run_Mode = 1;
    db->click("CmdRepAll");
    EXPECT_EQ(texts().back(), "Sorry, Not available in remote mode");
}

class BulkAdd : public CatalogueTest {
  protected:
    BulkAddReport add(const std::vector<std::filesystem::path>& paths, bool tags) {
        db->Wizard.Form_Load();
        BulkAddOptions options;
        options.tags = tags;
        options.progress_every = 2;
        options.say = [this](const std::string& line) { said.push_back(line); };
        std::vector<std::string> native;
        for (const auto& path : paths)
            native.push_back(path.string());
        return Bulk_Add(*db, fake.paths, native, options);
    }
    bool said_about(const std::string& name) const {
        for (const auto& line : said)
            if (line.find(name) != std::string::npos) return true;
        return false;
    }

    std::vector<std::string> said;
};

TEST_F(BulkAdd, WalksATreeOnceTakingTagsWhereNamesDontSayInEitherOrder) {
    place("short.mp3", "tree/Song - Band.mp3");
    place("tagged.mp3", "tree/sub/track01.mp3");
    place("short.mp3", "tree/sub/Ünïcode \"quoted\"; name.mp3");
    place("short.mp2", "tree/sub/deeper/Clip - Maker.mpa");
    std::ofstream(home() / "tree/sub/notes.txt") << "not music";
    std::ofstream(home() / "tree/sub/fake - one.mp3") << "not music either";
    std::ofstream(home() / "tree/cut - short.mp3", std::ios::binary)
        << std::string("\xff\xfb\x90\x00", 4);
    std::filesystem::create_directory_symlink(home() / "tree", home() / "tree/sub/loop");

    const BulkAddReport first = add({home() / "tree"}, true);
    EXPECT_EQ(first.added, 4);
    EXPECT_EQ(first.passed_over, 4);  // text, two broken files, the link
    EXPECT_TRUE(said_about("notes.txt"));
    EXPECT_TRUE(said_about("fake - one.mp3"));
    EXPECT_TRUE(said_about("loop"));
    EXPECT_TRUE(said_about("4 added"));

    std::map<std::string, std::string> by_file;
    for (long long id = 1; id <= 4; ++id) {
        by_file[field(id, "Long title").text()] = fields_of(id, {"Title", "Artist"});
        EXPECT_GT(field(id, "Length").number() * 86400, 1.9);
        EXPECT_EQ(fields_of(id, {"Category", "Valid Wednesday"}), "Always|True");
    }
    EXPECT_EQ(by_file[dos(home() / "tree/Song - Band.mp3")], "Song |Band");
    EXPECT_EQ(by_file[dos(home() / "tree/sub/track01.mp3")], "Tag Title|Tag Artist");
    // No tags and no dash: the input boxes' defaults.
    const std::string odd = "Ünïcode \"quoted\"; name";
    EXPECT_EQ(by_file[dos(home() / ("tree/sub/" + odd + ".mp3"))], odd + "|" + odd);
    EXPECT_EQ(by_file[dos(home() / "tree/sub/deeper/Clip - Maker.mpa")], "Clip |Maker");

    // A second run finds everything there already but the new file, named artist first.
    db->set("Combo6", -1, "Artist");
    place("short.mp3", "tree/Band - Song.mp3");
    const BulkAddReport again = add({home() / "tree", home() / "missing"}, false);
    EXPECT_EQ(again.added, 1);
    EXPECT_EQ(again.duplicates, 4);
    EXPECT_TRUE(said_about("missing"));
    EXPECT_EQ(fields_of(5, {"Title", "Artist"}), "Song|Band ");
}

}  // namespace
}  // namespace tavora
