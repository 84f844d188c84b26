#pragma once

#include <filesystem>
#include <string>

namespace tavora {

// The quick help page (manual\tqxops.htm) and the legal text
// (manual\legal.txt) that an install writes. Each returns why it failed, or
// an empty text.
std::string write_quick_help(const std::filesystem::path& file);
std::string write_legal_text(const std::filesystem::path& file);

}  // namespace tavora
