#include "runtime/text_file.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <vector>

#include "runtime/random.h"

namespace tavora {
namespace {

namespace fs = std::filesystem;
using Status = ReadResult::Status;

class TextFileTest : public ::testing::Test {
  protected:
    void SetUp() override {
        dir_ = fs::temp_directory_path() /
               ("tavora_text_" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) +
                "_" + ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::create_directories(dir_);
    }
    void TearDown() override { fs::remove_all(dir_); }

    fs::path write_raw(const std::string& bytes) {
        const fs::path path = dir_ / "in.txt";
        std::ofstream(path, std::ios::binary) << bytes;
        return path;
    }
    static std::string read_raw(const fs::path& path) {
        std::ifstream in(path, std::ios::binary);
        std::stringstream s;
        s << in.rdbuf();
        return s.str();
    }
    // Every item up to the end of the file, and the status that ended it.
    static std::vector<std::string> items(const fs::path& path, Status* end = nullptr) {
        TextReader r(path);
        std::vector<std::string> out;
        for (ReadResult item = r.read_item();; item = r.read_item()) {
            if (!item.ok()) {
                if (end) *end = item.status;
                return out;
            }
            out.push_back(item.text);
        }
    }

    fs::path dir_;
};

TEST_F(TextFileTest, WriterEndsLinesWithCrLfAndAppends) {
    const fs::path path = dir_ / "out.ini";
    TextWriter w(path, TextWriter::Mode::Create);
    ASSERT_TRUE(w.is_open());
    EXPECT_TRUE(w.write_line("0"));
    EXPECT_TRUE(w.write("a"));
    EXPECT_TRUE(w.write("b"));
    EXPECT_TRUE(w.write_line());
    EXPECT_TRUE(w.close());
    EXPECT_EQ(read_raw(path), "0\r\nab\r\n");

    TextWriter more(path, TextWriter::Mode::Append);
    EXPECT_TRUE(more.write_line("x"));
    EXPECT_TRUE(more.close());
    EXPECT_EQ(read_raw(path), "0\r\nab\r\nx\r\n");

    TextWriter again(path, TextWriter::Mode::Create);
    EXPECT_TRUE(again.close());
    EXPECT_EQ(read_raw(path), "");
}

TEST_F(TextFileTest, WriterReportsAFolderItCannotOpen) {
    TextWriter w(dir_ / "missing" / "out.txt", TextWriter::Mode::Append);
    EXPECT_FALSE(w.is_open());
    EXPECT_FALSE(w.write_line("x"));
    EXPECT_FALSE(w.close());
}

TEST_F(TextFileTest, LinesEndInCrLfLfOrCr) {
    TextReader r(write_raw("one\r\ntwo\nthree\rfour\r\n\r\nlast"));
    std::vector<std::string> lines;
    for (ReadResult line = r.read_line(); line.ok(); line = r.read_line()) {
        lines.push_back(line.text);
    }
    EXPECT_EQ(lines, (std::vector<std::string>{"one", "two", "three", "four", "", "last"}));
    EXPECT_TRUE(r.at_end());
    EXPECT_EQ(r.read_line().status, Status::EndOfFile);
}

TEST_F(TextFileTest, ItemsEndAtCommasAndLineEnds) {
    Status end = Status::Ok;
    const auto got = items(write_raw("a,b\r\n  c  ,d e\nf\r\n"), &end);
    EXPECT_EQ(got, (std::vector<std::string>{"a", "b", "c", "d e", "f"}));
    EXPECT_EQ(end, Status::EndOfFile);
}

TEST_F(TextFileTest, QuotedItemsStayWhole) {
    const auto got = items(write_raw("\"Song, Part 2\",x\r\n\" padded \"junk,\"\"\r\n\"open"));
    EXPECT_EQ(got, (std::vector<std::string>{"Song, Part 2", "x", " padded ", "", "open"}));
}

TEST_F(TextFileTest, BlankLinesGiveNoItemsButEmptyFieldsDo) {
    const auto got = items(write_raw("a\r\n\r\n\n   \r\nb,,c\r\n"));
    EXPECT_EQ(got, (std::vector<std::string>{"a", "b", "", "c"}));
}

TEST_F(TextFileTest, ShortFileEndsWithEndOfFile) {
    // A settings file cut after two of its values, the last with no line end.
    TextReader r(write_raw("True\r\n#12:00:00 PM#"));
    EXPECT_EQ(r.read_item().text, "True");
    EXPECT_FALSE(r.at_end());
    const ReadResult time = r.read_item();
    EXPECT_TRUE(time.ok());
    EXPECT_EQ(time.text, "#12:00:00 PM#");
    EXPECT_TRUE(r.at_end());
    EXPECT_EQ(r.read_item().status, Status::EndOfFile);
    EXPECT_EQ(r.read_item().status, Status::EndOfFile);
}

TEST_F(TextFileTest, MissingOrUnreadableFileFailsNotEnds) {
    TextReader missing(dir_ / "nothing.ini");
    EXPECT_FALSE(missing.is_open());
    EXPECT_EQ(missing.read_item().status, Status::Failed);
    EXPECT_EQ(missing.read_line().status, Status::Failed);

    // A folder opens on this system but can't be read.
    TextReader folder(dir_);
    EXPECT_EQ(folder.read_item().status, Status::Failed);
    EXPECT_EQ(folder.read_line().status, Status::Failed);
}

TEST_F(TextFileTest, WrittenLinesReadBackAsItems) {
    const fs::path path = dir_ / "round.ini";
    TextWriter w(path, TextWriter::Mode::Create);
    for (const char* line : {"False", "10", "TQXMS Direct", "c:\\tavora\\newreq.tqf", "None"}) {
        w.write_line(line);
    }
    ASSERT_TRUE(w.close());
    EXPECT_EQ(items(path), (std::vector<std::string>{"False", "10", "TQXMS Direct",
                                                     "c:\\tavora\\newreq.tqf", "None"}));
}

TEST(Random, FixedSequenceInUnitRange) {
    Random a;
    Random b;
    EXPECT_NEAR(a.next(), 0.7055475, 1e-7);
    EXPECT_NEAR(a.next(), 0.533424, 1e-6);
    b.next();
    b.next();
    for (int i = 0; i < 100000; ++i) {
        const double x = a.next();
        ASSERT_EQ(x, b.next());
        ASSERT_GE(x, 0.0);
        ASSERT_LT(x, 1.0);
    }
}

}  // namespace
}  // namespace tavora
