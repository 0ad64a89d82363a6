// SPDX-License-Identifier: MIT
#include "tests/support/Reports.h"
#include "tests/support/RunningProgram.h"

#include <QLineEdit>
#include <QTableView>
#include <QTest>

#include <benchmark/benchmark.h>

#include <filesystem>

namespace {

/// The program's main window with the shipped catalogue, on a screen in memory. Its requests get no
/// answer.
struct Stage : support::RunningProgram {
    Stage() {
        std::filesystem::copy_file(NOSIG_BINARY_DIR "/share/nosig/Stations.STNPKG",
                                   fake.folder / "resources/Stations.STNPKG");
        start();
    }
    ~Stage() { stop(); }

    void paint() {
        fake.mainThread.run();
        QCoreApplication::processEvents();
        benchmark::DoNotOptimize(stations().grab());
    }
};

/// The whole window painted anew, which the next two have in common.
void paintWindow(benchmark::State& state) {
    Stage stage;
    for (auto _ : state) {
        stage.paint();
    }
}
BENCHMARK(paintWindow)->Unit(benchmark::kMillisecond);

void keystrokeToRows(benchmark::State& state) {
    Stage stage;
    auto& field = Stage::child<QLineEdit>("sf");
    const char* letters = "KSFO";
    int typed = 0;
    for (auto _ : state) {
        if (typed == 4) {
            field.clear();
            typed = 0;
        }
        QTest::keyClick(&field, letters[typed++]);
        stage.paint();
    }
}
BENCHMARK(keystrokeToRows)->Unit(benchmark::kMillisecond);

/// Two stations in turn, whose reports the program has.
void selectionToReport(benchmark::State& state) {
    Stage stage;
    auto& table = Stage::child<QTableView>("table");
    int row = 0;
    for (auto _ : state) {
        row = 1 - row;
        table.selectRow(row);
        state.PauseTiming();
        const std::string station =
            table.model()->index(row, 2).data().toString().trimmed().toStdString();
        while (stage.fake.urlSessions.answer("=metars", support::metarReply(station)) ||
               stage.fake.urlSessions.answer("=TAFs", support::tafReply(station, ""))) {
        }
        state.ResumeTiming();
        stage.paint();
    }
}
BENCHMARK(selectionToReport)->Unit(benchmark::kMillisecond);

} // namespace

int main(int count, char** arguments) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(count, arguments);
    benchmark::Initialize(&count, arguments);
    benchmark::RunSpecifiedBenchmarks();
}
