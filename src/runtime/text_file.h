#pragma once

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

// Plain text files as the station exchanges them with other programs: lines
// written with CRLF ends; lines read back ending in CRLF, LF or a lone CR.

namespace tavora {

// Writes a text file; every line ends in CRLF. Nothing throws: each call
// says whether it worked, and a writer that failed once stays failed.
class TextWriter {
  public:
    enum class Mode { Create, Append };

    TextWriter() = default;
    TextWriter(const std::filesystem::path& path, Mode mode) { open(path, mode); }

    // Create empties an existing file; Append adds to its end. Both make the
    // file when it is missing. False when it can't be opened.
    bool open(const std::filesystem::path& path, Mode mode);
    bool is_open() const { return file_ != nullptr; }

    // Text with no line end, so that one line can be built in pieces.
    bool write(std::string_view text);
    bool write_line(std::string_view text = {});
    // Flushes and closes; false when anything written since open was lost.
    bool close();

  private:
    struct Closer {
        void operator()(std::FILE* f) const { std::fclose(f); }
    };
    std::unique_ptr<std::FILE, Closer> file_;
    bool failed_ = false;
};

// What a read gave: the text, or why there is none.
struct ReadResult {
    enum class Status { Ok, EndOfFile, Failed };
    Status status = Status::Failed;
    std::string text;

    bool ok() const { return status == Status::Ok; }
};

// Reads a text file by lines or by comma-separated items.
//
// Items: blanks and tabs before an item are skipped; an item in double
// quotes runs to the closing quote, commas and all, and anything after the
// quote up to the next comma or line end is dropped; an unquoted item ends at
// a comma or a line end and loses its trailing blanks. A blank line is one
// empty item, as are two commas in a row, so line-numbered files stay in
// step.
// A read at the end of the file reports EndOfFile; a file that isn't open or
// can't be read reports Failed.
class TextReader {
  public:
    TextReader() = default;
    explicit TextReader(const std::filesystem::path& path) { open(path); }

    // False when the file is missing or can't be opened.
    bool open(const std::filesystem::path& path);
    bool is_open() const { return file_ != nullptr; }
    void close() { file_.reset(); }

    // True when nothing is left to read (or nothing is open).
    bool at_end();

    ReadResult read_line();
    ReadResult read_item();

  private:
    struct Closer {
        void operator()(std::FILE* f) const { std::fclose(f); }
    };
    int peek();
    int get();
    // Consumes a line end (CRLF, LF or CR) if one is next.
    bool take_line_end();
    ReadResult finish(std::string text);

    std::unique_ptr<std::FILE, Closer> file_;
};

}  // namespace tavora
