// The request list and the web paths on a 100k-row library: a page, a
// letter jump to the end of the alphabet, a check of a 10,000-item request
// file, and the web list export.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <memory>
#include <string>

#include "fake_services.h"
#include "internet/mailfrm.h"
#include "internet/web_list.h"
#include "requests/request_form.h"
#include "runtime/text_file.h"
#include "store/library_files.h"
#include "store/recordset.h"

namespace tavora {
namespace {

constexpr double kToday = 46091.5;
constexpr int kRecords = 100'000;

std::string title_of(int i) {
    // Spread over the alphabet, so that "Z" lies at the end of the sort.
    return std::string(1, static_cast<char>('A' + i % 26)) + " song " + std::to_string(i);
}

// One station on a generated library, shared by the benchmarks of a run.
class Bench {
  public:
    Bench() {
        generate();
        station.Act_Db = "c:\\tavora\\qx1.mdb";
        station.Run_Mode = 0;
        request = std::make_unique<Request>(station, fake_.services, pool_);
        request->Form_Load();
        mail = std::make_unique<Mailfrm>(station, fake_.services, pool_);
        mail->Form_Load();
        web = std::make_unique<WebList>(*request, station, fake_.services);
        TextWriter head(home() / "web" / "tqxshdr.htm", TextWriter::Mode::Create);
        head.write_line("<head>");
        head.close();
    }
    ~Bench() {
        web.reset();
        mail.reset();
        request.reset();
    }

    std::filesystem::path home() const { return fake_.home(); }

    Station station;
    std::unique_ptr<Request> request;
    std::unique_ptr<Mailfrm> mail;
    std::unique_ptr<WebList> web;

  private:
    void generate() {
        std::filesystem::create_directories(home() / "web");
        const auto path = home() / "qx1.mdb";
        create_library_file(path, kToday);
        auto library = pool_.open(path, FileKind::Library).library;
        Transaction batch = library->transaction();
        Statement insert = library->connection().prepare(
            "INSERT INTO Recordings1 (Title, Artist, Category, Type, Speed, [Long title], Sel,"
            " T40, C40, [Request This Month], Source, CreationDate) VALUES (?, ?, ?, ?, ?, ?, 0,"
            " ?, ?, ?, ?, ?)");
        for (int i = 0; i < kRecords; ++i) {
            const std::string title = title_of(i);
            insert.bind(1, title);
            insert.bind(2, "Artist " + std::to_string(i % 997));
            insert.bind(3, i % 3 == 0 ? "POP" : "Rock");
            insert.bind(4, i % 40 == 0 ? Value("Holiday") : Value("Rock"));
            insert.bind(5, i % 5 == 0 ? Value("Dance") : Value());
            insert.bind(6, "d:\\music\\" + title + ".mp3");
            insert.bind(7, i % 250 == 0 ? i % 40 + 1 : 0);
            insert.bind(8, i % 300 == 0 ? i % 49 + 1 : 0);
            insert.bind(9, i % 100 == 0 ? 2 : 0);
            insert.bind(10, i % 50 == 0 ? Value("Snipit") : Value());
            insert.bind(11, Value::date(kToday - i % 60));
            insert.step();
            insert.reset();
        }
        batch.commit();
    }

    FakeServices fake_{kToday};
    LibraryPool pool_;
};

Bench& bench() {
    static Bench instance;
    return instance;
}

void BM_ShowPage(benchmark::State& state) {
    Request& request = *bench().request;
    request.List_Top = kRecords / 2;
    for (auto _ : state) {
        request.Show_Page();
        benchmark::DoNotOptimize(request.RB(14).Caption);
    }
}
BENCHMARK(BM_ShowPage)->Unit(benchmark::kMillisecond);

// A page after the library changed: the sort runs again first.
void BM_ShowPageAfterAChange(benchmark::State& state) {
    Request& request = *bench().request;
    Recordset table = OpenRecordset(request.datPrimaryRS.Recordset().library(), "Recordings1");
    int count = 0;
    for (auto _ : state) {
        state.PauseTiming();
        table.MoveFirst();
        table.Edit();
        table.SetField("RTW", Value(++count));
        table.Update();
        state.ResumeTiming();
        request.Show_Page();
        benchmark::DoNotOptimize(request.RB(14).Caption);
    }
}
BENCHMARK(BM_ShowPageAfterAChange)->Unit(benchmark::kMillisecond);

void BM_LetterJumpToZ(benchmark::State& state) {
    Request& request = *bench().request;
    for (auto _ : state) {
        request.BLtr_Click(25);
        benchmark::DoNotOptimize(request.List_Top);
    }
}
BENCHMARK(BM_LetterJumpToZ)->Unit(benchmark::kMillisecond);

// The first jump after the library changed reads the whole list again.
void BM_LetterJumpAfterARequest(benchmark::State& state) {
    Request& request = *bench().request;
    for (auto _ : state) {
        state.PauseTiming();
        request.BtnSrt_Click(0);
        request.click("RB", 1);
        state.ResumeTiming();
        request.BLtr_Click(25);
        benchmark::DoNotOptimize(request.List_Top);
    }
}
BENCHMARK(BM_LetterJumpAfterARequest)->Unit(benchmark::kMillisecond);

void BM_CheckOf10kItems(benchmark::State& state) {
    Bench& b = bench();
    TextWriter out(b.home() / "newreq.tqf", TextWriter::Mode::Create);
    for (int i = 0; i < 10'000; ++i)
        out.write_line(title_of(i * 7 % kRecords));
    out.close();
    for (auto _ : state) {
        b.mail->Label12.Caption = "0";
        b.station.IIS_LastTime = 0;
        b.mail->Check_File();
        benchmark::DoNotOptimize(b.mail->Label12.Caption);
    }
}
BENCHMARK(BM_CheckOf10kItems)->Unit(benchmark::kMillisecond);

void BM_WebListExport(benchmark::State& state) {
    Bench& b = bench();
    for (auto _ : state) {
        b.web->wiz_it();
        benchmark::DoNotOptimize(b.station.Web_Run);
    }
}
BENCHMARK(BM_WebListExport)->Unit(benchmark::kMillisecond)->Iterations(2);

}  // namespace
}  // namespace tavora
