#include "catalogue/bulk_add.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "catalogue/file_names.h"
#include "catalogue/tag_reader.h"
#include "platform/file_ops.h"
#include "platform/path_map.h"
#include "runtime/strings.h"

namespace tavora {

namespace {

namespace fs = std::filesystem;

class Walk {
  public:
    Walk(frmTavoraDb& db, const PathMap& paths, const BulkAddOptions& options)
        : db_(db), paths_(paths), options_(options) {}

    void path(const fs::path& given) {
        std::error_code error;
        const auto status = fs::status(given, error);
        if (fs::is_directory(status)) return folder(given);
        if (fs::is_regular_file(status)) return media(given);
        pass_over(given, error ? error.message() : "no such file or folder");
    }

    BulkAddReport report;

  private:
    // The wizard's media types in its order, then the subfolders.
    void folder(const fs::path& dir) {
        std::error_code error;
        std::vector<fs::path> files, folders;
        for (fs::directory_iterator it(dir, error), end; !error && it != end; it.increment(error)) {
            std::error_code link_error;
            const auto own = it->symlink_status(link_error);
            if (fs::is_symlink(own) && fs::is_directory(it->status(link_error))) {
                pass_over(it->path(), "a link to a folder, not followed");
            } else if (fs::is_directory(own)) {
                folders.push_back(it->path());
            } else {
                files.push_back(it->path());
            }
        }
        if (error) return pass_over(dir, "can't read the folder: " + error.message());
        std::sort(files.begin(), files.end());
        std::sort(folders.begin(), folders.end());
        for (const char* pattern : kWizardPatterns) {
            for (const fs::path& file : files) {
                if (files::WildcardMatch(pattern, file.filename().string())) media(file);
            }
        }
        for (const fs::path& file : files) {
            if (pattern_of(file) == nullptr) pass_over(file, "not a media type the wizard loads");
        }
        for (const fs::path& sub : folders)
            folder(sub);
    }

    static const char* pattern_of(const fs::path& file) {
        for (const char* pattern : kWizardPatterns) {
            if (files::WildcardMatch(pattern, file.filename().string())) return pattern;
        }
        return nullptr;
    }

    void media(const fs::path& file) {
        if (pattern_of(file) == nullptr)
            return pass_over(file, "not a media type the wizard loads");
        const std::string dos = paths_.ToDos(fs::absolute(file));
        FileTags tags;
        if (options_.tags && InStr(Base_Name(dos), " - ") == 0) tags = read_tags(file.string());
        const auto outcome = db_.add_new_file(dos, tags.title, tags.artist);
        switch (outcome.kind) {
            case frmTavoraDb::AddOutcome::Added:
                ++report.added;
                break;
            case frmTavoraDb::AddOutcome::Duplicate:
                ++report.duplicates;
                break;
            default:
                pass_over(file, outcome.why);
                break;
        }
        progress();
    }

    void pass_over(const fs::path& file, const std::string& why) {
        ++report.passed_over;
        say("passed over " + file.string() + ": " + why);
    }

    void progress() {
        const long seen = report.added + report.duplicates;
        if (options_.progress_every > 0 && seen % options_.progress_every == 0)
            say(std::to_string(seen) + " files looked at, " + std::to_string(report.added) +
                " added");
    }

    void say(const std::string& line) {
        if (options_.say) options_.say(line);
    }

    frmTavoraDb& db_;
    const PathMap& paths_;
    const BulkAddOptions& options_;
};

}  // namespace

BulkAddReport Bulk_Add(frmTavoraDb& db, const PathMap& paths,
                       const std::vector<std::string>& native_paths,
                       const BulkAddOptions& options) {
    db.load_known_files();
    Walk walk(db, paths, options);
    for (const std::string& path : native_paths)
        walk.path(path);
    return walk.report;
}

}  // namespace tavora
