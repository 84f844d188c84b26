#include <fstream>

#include "catalogue/bulk_add.h"
#include "catalogue_fixture.h"

namespace tavora {
namespace {

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

TEST_F(BulkAdd, WalksATreeOnceTakingTagsWhereNamesDontSay) {
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

    std::map<std::string, std::pair<std::string, std::string>> by_file;
    for (Recordset all = rows(); !all.IsEOF(); all.MoveNext()) {
        by_file[all.Fields("Long title").text()] = {all.Fields("Title").text(),
                                                    all.Fields("Artist").text()};
        EXPECT_GT(all.Fields("Length").number() * 86400, 1.9);
        EXPECT_EQ(all.Fields("Category").text(), "Always");
        EXPECT_TRUE(all.Fields("Valid Wednesday").truthy());
    }
    using Names = std::pair<std::string, std::string>;
    EXPECT_EQ(by_file[dos(home() / "tree/Song - Band.mp3")], Names("Song ", "Band"));
    EXPECT_EQ(by_file[dos(home() / "tree/sub/track01.mp3")], Names("Tag Title", "Tag Artist"));
    // No tags and no dash: the input boxes' defaults.
    const std::string odd = "Ünïcode \"quoted\"; name";
    EXPECT_EQ(by_file[dos(home() / ("tree/sub/" + odd + ".mp3"))], Names(odd, odd));
    EXPECT_EQ(by_file[dos(home() / "tree/sub/deeper/Clip - Maker.mpa")], Names("Clip ", "Maker"));

    // A second run finds everything there already.
    const BulkAddReport again = add({home() / "tree", home() / "missing"}, false);
    EXPECT_EQ(again.added, 0);
    EXPECT_EQ(again.duplicates, 4);
    EXPECT_TRUE(said_about("missing"));
    EXPECT_EQ(count(), 4);
}

TEST_F(BulkAdd, ArtistFirstOrderReversesTheNames) {
    db->set("Combo6", -1, "Artist");
    place("short.mp3", "in/Band - Song.mp3");
    EXPECT_EQ(add({home() / "in" / "Band - Song.mp3"}, false).added, 1);
    Recordset all = rows();
    EXPECT_EQ(all.Fields("Title").text(), "Song");
    EXPECT_EQ(all.Fields("Artist").text(), "Band ");
}

}  // namespace
}  // namespace tavora
