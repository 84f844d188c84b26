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
