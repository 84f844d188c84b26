#include "store/stored_queries.h"

#include "runtime/convert.h"
#include "runtime/date_text.h"
#include "store/transaction.h"

namespace tavora {

namespace {

// The three category fields tested for one genre.
std::string genre_test(const std::string& genre) {
    return "(Recordings1.[Category] Like '*" + genre + "*')or (Recordings1.[Speed]Like'*" + genre +
           "*') or (Recordings1.[Type] Like'*" + genre + "*')";
}

std::string category_like(const std::string& where, const std::string& genre) {
    return "SELECT * from Recordings1 " + where + " " + genre_test(genre);
}

std::string genre_clause(const std::string& genre) {
    return "or " + genre_test(genre);
}

const char* const kByTitle = "ORDER BY Recordings1.[Title];";
const char* const kCharted =
    "SELECT * from Recordings1 where (Recordings1.[T40] >0)or (Recordings1.[C40]>0) or "
    "(Recordings1.[D40] >0) or (Recordings1.[AM40] >0)";

}  // namespace

std::vector<StoredQuery> stored_queries(double now) {
    const bool early_in_month = Val(Format(now, "dd")) < 5;
    const std::string calc_req =
        early_in_month ? "SELECT * from Recordings1 ORDER BY Recordings1.[Request AllTime]DESC,"
                         "Recordings1.[Request This Month]DESC,Recordings1.[Total Request];"
                       : "SELECT * from Recordings1 ORDER BY Recordings1.[Request This Month]DESC, "
                         "Recordings1.[Request AllTime]DESC,Recordings1.[Total Request];";
    return {
        {"MOST PLAYED",
         "SELECT * from Recordings1 ORDER BY Recordings1.[Total Request]DESC, "
         "Recordings1.[Title];"},
        {"BPSort",
         "SELECT * from Recordings1 Where (Recordings1.[Schedule Select] >0) ORDER BY "
         "Recordings1.[Artist], Recordings1.[Last Played];"},
        {"RequestThisMonth",
         "SELECT * from Recordings1 Where (Recordings1.[Request This Month] >0)ORDER BY "
         "Recordings1.[Request This Month]DESC;"},
        {"Title Sort", "SELECT * from Recordings1 ORDER BY Recordings1.[Title];"},
        {"Artist Sort", "SELECT * from Recordings1 ORDER BY Recordings1.[Artist];"},
        {"PopRock",
         category_like("Where", "POP") + genre_clause("ROCK") + genre_clause("Dance") + kByTitle},
        {"TopDance", category_like("where", "Dance") + kByTitle},
        {"AdultCon", category_like("where", "AM") + kByTitle},
        {"Top40", std::string(kCharted) +
                      "ORDER BY Recordings1.[T40],Recordings1.[C40],Recordings1.[D40],"
                      "Recordings1.[AM40];"},
        {"TopCountry", category_like("where", "Country") + kByTitle},
        {"Timed Promo", "SELECT * from Recordings1 Where (Recordings1.[Source] = 'Timed Promo');"},
        {"SRequest",
         "SELECT * from Recordings1 Where (Recordings1.[Sel] >0) ORDER BY "
         "Recordings1.[Sel]DESC, Recordings1.[Last Played];"},
        {"HotList", std::string(kCharted) + ";"},
        {"LeastPlayed",
         "SELECT * from Recordings1 Where (Recordings1.[Schedule Select] >0) ORDER BY "
         "Recordings1.[Total Request];"},
        {"LastPlay",
         "SELECT * from Recordings1 Where (Recordings1.[Schedule Select] >0) ORDER BY "
         "Recordings1.[Last Played];"},
        {"NormSel", "SELECT * from Recordings1 Where (Recordings1.[Schedule Select] >0);"},
        {"Promo2",
         "SELECT * from Recordings1 Where (Recordings1.[Source] = 'Timed Promo') ORDER BY "
         "Recordings1.[Total Request]DESC;"},
        {"CalcReq", calc_req},
        {"Special Sort",
         "SELECT * from Recordings1 Where (Recordings1.[Source] <>'')ORDER BY "
         "Recordings1.[Source],Recordings1.[Title];"},
        {"Active1",
         "SELECT * from Recordings1 ORDER BY Recordings1.[Category], Recordings1.[Speed], "
         "Recordings1.[Type], Recordings1.[Title];"},
        {"PLNames",
         "SELECT * from Recordings1 Where (Recordings1.[Long title] Like 'QXP*') ORDER BY "
         "Recordings1.[Title]DESC;"},
        {"CRequest",
         "SELECT * from Recordings1 ORDER BY Recordings1.[Sel]DESC,Recordings1.[Title];"},
        {"NewMusic", "SELECT * from Recordings1 ORDER BY Recordings1.[CreationDate]DESC;"},
        {"FName", "SELECT * from Recordings1 ORDER BY Recordings1.[Long title];"},
        {"MaxPlys",
         "SELECT * from Recordings1 ORDER BY Recordings1.[Max Play Day]DESC, "
         "Recordings1.[Max Play Week]DESC, Recordings1.[Max Month]DESC, Recordings1.[Title];"},
        {"CDNow",
         "SELECT * from Recordings1 Where (Recordings1.[Format] Like 'CD*') ORDER BY "
         "Recordings1.[Format], Recordings1.[RecID];"},
    };
}

std::string Make_Qrys(Library& library, double now, const std::function<void()>& reset_cd) {
    Connection& connection = library.connection();
    const TableSpec& table = stored_query_table();
    const std::string name = quote_identifier(table.name);
    // One commit for the whole catalogue: a library that can't take it stays
    // as it was, never half rewritten.
    Transaction batch = library.transaction();
    std::string failure;
    if (!batch.ok() || !connection.exec(create_table_sql(table))) failure = connection.error();
    Statement create =
        connection.prepare("INSERT OR IGNORE INTO " + name + " (\"Name\", \"SQL\") VALUES (?, ?)");
    Statement set_text =
        connection.prepare("UPDATE " + name + " SET \"SQL\" = ? WHERE \"Name\" = ?");
    for (const StoredQuery& query : stored_queries(now)) {
        if (query.name == "CDNow" && reset_cd) reset_cd();
        // A locked file would make every row wait for the lock in turn.
        if (!batch.ok()) continue;
        // A row that fails is passed over; the others are still written.
        create.bind_text(1, query.name);
        create.bind_text(2, query.sql);
        if (create.step() == Statement::Step::Error && failure.empty()) failure = create.error();
        create.reset();
        set_text.bind_text(1, query.sql);
        set_text.bind_text(2, query.name);
        if (set_text.step() == Statement::Step::Error && failure.empty())
            failure = set_text.error();
        set_text.reset();
    }
    if (!batch.ok()) return "Can't rewrite the stored queries: " + failure;
    if (!batch.commit()) return "Can't rewrite the stored queries: " + connection.error();
    library.note_write();
    library.forget_plans();
    if (!failure.empty()) return "Some stored queries were not rewritten: " + failure;
    return {};
}

}  // namespace tavora
