#include "catalogue/file_names.h"

#include <chrono>
#include <ctime>
#include <system_error>

#include "runtime/dates.h"
#include "runtime/strings.h"

namespace tavora {

std::string Base_Name(const std::string& file) {
    const long long keep =
        static_cast<long long>(Len(file)) - static_cast<long long>(InStr(file, "\\")) - 1;
    std::string base = keep > 0 ? Left(file, static_cast<std::size_t>(keep)) : std::string();
    for (int cut = 0; cut < 6; ++cut)
        base = Mid(base, static_cast<long long>(InStr(base, "\\")) + 1);
    return base;
}

NameParts Split_Name(const std::string& base) {
    const std::size_t p = InStr(base, " - ");
    const long long back = static_cast<long long>(Len(base)) - static_cast<long long>(p) - 2;
    return {Left(base, p), back > 0 ? Right(base, static_cast<std::size_t>(back)) : std::string()};
}

bool is_asx(const std::string& file) {
    const std::string ending = Right(file, 3);
    return ending == "asx" || ending == "ASX";
}

std::optional<double> file_date(const std::filesystem::path& path) {
    std::error_code error;
    const auto written = std::filesystem::last_write_time(path, error);
    if (error || !std::filesystem::is_regular_file(path, error)) return std::nullopt;
    const auto system = std::chrono::file_clock::to_sys(written);
    const std::time_t seconds = std::chrono::system_clock::to_time_t(system);
    std::tm local{};
    if (!localtime_r(&seconds, &local)) return std::nullopt;
    return DateSerial(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday) +
           TimeSerial(local.tm_hour, local.tm_min, local.tm_sec);
}

}  // namespace tavora
