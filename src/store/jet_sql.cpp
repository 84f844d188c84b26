#include "store/jet_sql.h"

#include <cctype>
#include <vector>

#include "runtime/strings.h"

namespace tavora {

namespace {

struct Token {
    enum class Kind { Space, Word, Bracket, String, Quoted, Symbol };
    Kind kind;
    std::string_view text;
};

bool is_word_char(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '$';
}

// Scans to the closing quote; a doubled quote stays inside the literal.
std::size_t quoted_end(std::string_view sql, std::size_t start, char quote) {
    std::size_t i = start + 1;
    while (i < sql.size()) {
        if (sql[i] == quote) {
            if (i + 1 < sql.size() && sql[i + 1] == quote) {
                i += 2;
                continue;
            }
            return i + 1;
        }
        ++i;
    }
    return sql.size();
}

std::vector<Token> tokenize(std::string_view sql) {
    std::vector<Token> tokens;
    std::size_t i = 0;
    while (i < sql.size()) {
        const char c = sql[i];
        std::size_t end = i + 1;
        Token::Kind kind = Token::Kind::Symbol;
        if (std::isspace(static_cast<unsigned char>(c)) != 0) {
            kind = Token::Kind::Space;
            while (end < sql.size() && std::isspace(static_cast<unsigned char>(sql[end])) != 0) {
                ++end;
            }
        } else if (is_word_char(c)) {
            kind = Token::Kind::Word;
            while (end < sql.size() && is_word_char(sql[end]))
                ++end;
        } else if (c == '[') {
            kind = Token::Kind::Bracket;
            const std::size_t close = sql.find(']', i);
            end = close == std::string_view::npos ? sql.size() : close + 1;
        } else if (c == '\'') {
            kind = Token::Kind::String;
            end = quoted_end(sql, i, '\'');
        } else if (c == '"') {
            kind = Token::Kind::Quoted;
            end = quoted_end(sql, i, '"');
        } else if ((c == '<' || c == '>' || c == '!') && end < sql.size() &&
                   (sql[end] == '=' || (c == '<' && sql[end] == '>'))) {
            ++end;
        }
        tokens.push_back({kind, sql.substr(i, end - i)});
        i = end;
    }
    return tokens;
}

bool is_word(const Token& token, std::string_view word) {
    return token.kind == Token::Kind::Word && LCase(token.text) == LCase(word);
}

// The contents of a quoted literal, its doubled quotes made single.
std::string unquote(std::string_view literal) {
    const char quote = literal.front();
    std::string out;
    const std::size_t end =
        literal.size() >= 2 && literal.back() == quote ? literal.size() - 1 : literal.size();
    for (std::size_t i = 1; i < end; ++i) {
        out += literal[i];
        if (literal[i] == quote && i + 1 < end && literal[i + 1] == quote) ++i;
    }
    return out;
}

std::string string_literal(std::string_view text) {
    std::string out = "'";
    for (const char c : text) {
        if (c == '\'') out += '\'';
        out += c;
    }
    out += '\'';
    return out;
}

// A Jet Like pattern as an SQLite LIKE operand, with an ESCAPE clause when
// a literal % or _ had to be protected.
std::string like_operand(std::string_view pattern) {
    std::string out;
    bool escaped = false;
    auto literal = [&](char c) {
        if (c == '%' || c == '_' || c == '\\') {
            out += '\\';
            escaped = true;
        }
        out += c;
    };
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        const char c = pattern[i];
        if (c == '*') {
            out += '%';
        } else if (c == '?') {
            out += '_';
        } else if (c == '[' && i + 2 < pattern.size() && pattern[i + 2] == ']') {
            literal(pattern[i + 1]);
            i += 2;
        } else {
            literal(c);
        }
    }
    std::string operand = string_literal(out);
    if (escaped) operand += " ESCAPE '\\'";
    return operand;
}

// Index of the next token that isn't blank, or tokens.size().
std::size_t next_solid(const std::vector<Token>& tokens, std::size_t from) {
    while (from < tokens.size() && tokens[from].kind == Token::Kind::Space)
        ++from;
    return from;
}

// For a plain single-table "SELECT * FROM t ..." the index of t's token.
std::size_t single_table(const std::vector<Token>& tokens) {
    const std::size_t none = tokens.size();
    std::size_t i = next_solid(tokens, 0);
    if (i == none || !is_word(tokens[i], "select")) return none;
    i = next_solid(tokens, i + 1);
    if (i == none || tokens[i].text != "*") return none;
    i = next_solid(tokens, i + 1);
    if (i == none || !is_word(tokens[i], "from")) return none;
    const std::size_t table = next_solid(tokens, i + 1);
    if (table == none ||
        (tokens[table].kind != Token::Kind::Word && tokens[table].kind != Token::Kind::Bracket)) {
        return none;
    }
    const std::size_t after = next_solid(tokens, table + 1);
    if (after != none && !is_word(tokens[after], "where") && !is_word(tokens[after], "order") &&
        tokens[after].text != ";") {
        return none;
    }
    for (std::size_t k = after; k < tokens.size(); ++k) {
        for (const std::string_view word : {"join", "union", "group", "having", "select"}) {
            if (is_word(tokens[k], word)) return none;
        }
    }
    return table;
}

}  // namespace

JetTranslation translate_jet_sql(std::string_view jet) {
    const std::vector<Token> tokens = tokenize(jet);
    const std::size_t table = single_table(tokens);
    JetTranslation result;
    std::size_t from_offset = std::string::npos;
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        const Token& token = tokens[i];
        if (table < tokens.size() && from_offset == std::string::npos && is_word(token, "from")) {
            from_offset = result.sql.size();
        }
        const std::size_t next = next_solid(tokens, i + 1);
        const bool next_is_null = next < tokens.size() && is_word(tokens[next], "null");
        if (is_word(token, "like") && next < tokens.size() &&
            tokens[next].kind == Token::Kind::String) {
            result.sql += "LIKE ";
            result.sql += like_operand(unquote(tokens[next].text));
            i = next;
        } else if ((token.text == "=" || token.text == "<>") && next_is_null) {
            result.sql += token.text == "=" ? "IS NULL" : "IS NOT NULL";
            i = next;
        } else if (is_word(token, "true")) {
            result.sql += "-1";
        } else if (is_word(token, "false")) {
            result.sql += "0";
        } else if (token.kind == Token::Kind::Quoted) {
            result.sql += string_literal(unquote(token.text));
        } else {
            result.sql += token.text;
        }
    }
    if (table < tokens.size()) {
        result.table = std::string(tokens[table].text);
        result.rowid_sql = "SELECT " + result.table + ".rowid " + result.sql.substr(from_offset);
    }
    return result;
}

}  // namespace tavora
