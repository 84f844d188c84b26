#include "runtime/text_file.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <vector>

#include "test_folder.h"

namespace tavora {
namespace {

namespace fs = std::filesystem;
using Status = ReadResult::Status;
using Items = std::vector<std::string>;

class TextFileTest : public ::testing::Test {
  protected:
    fs::path write_raw(const std::string& bytes) { return dir.Write("in.txt", bytes); }
    static std::string read_raw(const fs::path& path) {
        std::stringstream s;
        s << std::ifstream(path, std::ios::binary).rdbuf();
        return s.str();
    }
    // Every item up to the end, which must be a clean end of file.
    static Items items(const fs::path& path) {
        TextReader r(path);
        Items out;
        ReadResult item = r.read_item();
        for (; item.ok(); item = r.read_item())
            out.push_back(item.text);
        EXPECT_EQ(item.status, Status::EndOfFile);
        return out;
    }

    TestFolder dir;
};

TEST_F(TextFileTest, WriterEndsLinesWithCrLfAndAppends) {
    const fs::path path = dir.path() / "out.ini";
    TextWriter w(path, TextWriter::Mode::Create);
    EXPECT_TRUE(w.write_line("0"));
    EXPECT_TRUE(w.write("a"));
    EXPECT_TRUE(w.write_line("b"));
    EXPECT_TRUE(w.close());
    EXPECT_EQ(read_raw(path), "0\r\nab\r\n");

    TextWriter more(path, TextWriter::Mode::Append);
    EXPECT_TRUE(more.write_line("x"));
    EXPECT_TRUE(more.close());
    EXPECT_EQ(read_raw(path), "0\r\nab\r\nx\r\n");

    EXPECT_TRUE(TextWriter(path, TextWriter::Mode::Create).close());
    EXPECT_EQ(read_raw(path), "");

    TextWriter nowhere(dir.path() / "missing" / "out.txt", TextWriter::Mode::Append);
    EXPECT_FALSE(nowhere.write_line("x"));
    EXPECT_FALSE(nowhere.close());
}

TEST_F(TextFileTest, LinesAndItemsEndAtCrLfLfCrOrComma) {
    TextReader r(write_raw("one\r\ntwo\nthree\rfour\r\n\r\nlast"));
    Items lines;
    for (ReadResult line = r.read_line(); line.ok(); line = r.read_line()) {
        lines.push_back(line.text);
    }
    EXPECT_EQ(lines, (Items{"one", "two", "three", "four", "", "last"}));
    EXPECT_EQ(r.read_line().status, Status::EndOfFile);
    EXPECT_EQ(items(write_raw("a,b\r\n  c  ,d e\nf\r\n")), (Items{"a", "b", "c", "d e", "f"}));
    // A blank line, and two commas in a row, each hold one empty item.
    EXPECT_EQ(items(write_raw("a\r\n\r\n\n   \r\nb,,c\r\n")),
              (Items{"a", "", "", "", "b", "", "c"}));
}

TEST_F(TextFileTest, QuotedItemsStayWholeAndAShortFileEndsCleanly) {
    EXPECT_EQ(items(write_raw("\"Song, Part 2\",x\r\n\" padded \"junk,\"\"\r\n\"open")),
              (Items{"Song, Part 2", "x", " padded ", "", "open"}));

    // A file cut after two of its values, the last with no line end.
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
    TextReader missing(dir.path() / "nothing.ini");
    EXPECT_FALSE(missing.is_open());
    EXPECT_EQ(missing.read_item().status, Status::Failed);
    EXPECT_EQ(missing.read_line().status, Status::Failed);

    // A folder opens on this system but can't be read.
    TextReader folder(dir.path());
    EXPECT_EQ(folder.read_item().status, Status::Failed);
    EXPECT_EQ(folder.read_line().status, Status::Failed);
}

}  // namespace
}  // namespace tavora
