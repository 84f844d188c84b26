#include "runtime/text_file.h"

namespace tavora {

bool TextWriter::open(const std::filesystem::path& path, Mode mode) {
    file_.reset(std::fopen(path.c_str(), mode == Mode::Create ? "wb" : "ab"));
    failed_ = file_ == nullptr;
    return !failed_;
}

bool TextWriter::write(std::string_view text) {
    if (!file_) return false;
    if (!text.empty() && std::fwrite(text.data(), 1, text.size(), file_.get()) != text.size()) {
        failed_ = true;
    }
    return !failed_;
}

bool TextWriter::write_line(std::string_view text) {
    return write(text) && write("\r\n");
}

bool TextWriter::close() {
    if (!file_) return false;
    if (std::fflush(file_.get()) != 0) failed_ = true;
    if (std::fclose(file_.release()) != 0) failed_ = true;
    return !failed_;
}

bool TextReader::open(const std::filesystem::path& path) {
    file_.reset(std::fopen(path.c_str(), "rb"));
    return file_ != nullptr;
}

int TextReader::peek() {
    const int c = std::fgetc(file_.get());
    if (c != EOF) std::ungetc(c, file_.get());
    return c;
}

int TextReader::get() {
    return std::fgetc(file_.get());
}

bool TextReader::at_end() {
    return !file_ || peek() == EOF;
}

bool TextReader::take_line_end() {
    const int c = peek();
    if (c != '\r' && c != '\n') return false;
    get();
    if (c == '\r' && peek() == '\n') get();
    return true;
}

ReadResult TextReader::finish(std::string text) {
    if (std::ferror(file_.get())) return {ReadResult::Status::Failed, {}};
    return {ReadResult::Status::Ok, std::move(text)};
}

ReadResult TextReader::read_line() {
    if (!file_) return {ReadResult::Status::Failed, {}};
    if (peek() == EOF) {
        return {
            std::ferror(file_.get()) ? ReadResult::Status::Failed : ReadResult::Status::EndOfFile,
            {}};
    }
    std::string line;
    for (int c = peek(); c != EOF && c != '\r' && c != '\n'; c = peek()) {
        line += static_cast<char>(get());
    }
    take_line_end();
    return finish(std::move(line));
}

ReadResult TextReader::read_item() {
    if (!file_) return {ReadResult::Status::Failed, {}};
    int c = peek();
    while (c == ' ' || c == '\t') {
        get();
        c = peek();
    }
    if (c == EOF) {
        return {
            std::ferror(file_.get()) ? ReadResult::Status::Failed : ReadResult::Status::EndOfFile,
            {}};
    }
    std::string item;
    if (c == '"') {
        get();
        for (c = get(); c != EOF && c != '"'; c = get())
            item += static_cast<char>(c);
        // What follows the closing quote, up to the delimiter, is dropped.
        for (c = peek(); c != EOF && c != ',' && c != '\r' && c != '\n'; c = peek())
            get();
    } else {
        for (; c != EOF && c != ',' && c != '\r' && c != '\n'; c = peek()) {
            item += static_cast<char>(get());
        }
        const std::size_t last = item.find_last_not_of(" \t");
        item.resize(last == std::string::npos ? 0 : last + 1);
    }
    if (peek() == ',') {
        get();
    } else {
        take_line_end();
    }
    return finish(std::move(item));
}

}  // namespace tavora
