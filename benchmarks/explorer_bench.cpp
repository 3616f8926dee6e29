// The explorer's first page out of 1,000 pictures of the canvas's size, against loading the pictures that it shows.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/host/explorer/explorer.h"
#include "platform/host/files/picture_file.h"
#include "support/temporary_folder.h"
#include "support/test_desk.h"

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr int kRounds = 25;
constexpr int kPictures = 1000;
constexpr int kOnPage = 11;  // and "new picture"

double milliseconds(Clock::time_point since) {
    return std::chrono::duration<double, std::milli>(Clock::now() - since).count();
}

double median(std::vector<double> times) {
    const auto middle = times.begin() + std::ssize(times) / 2;
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
}

/// The newest pictures are files of their own; all older ones share one, since a thousand would fill a disk.
void fill(const fs::path& folder) {
    // A drawing: lines across two thirds of the paper.
    host::Screen paper({1404, 1764}, host::PixelFormat::Rgb24);
    for (int i = 0; i < 60; ++i) paper.line({100 + 7 * i, 200}, {1300 - 11 * i, 1376}, 0xFF0000 >> i % 24);
    const host::BitmapPtr picture = paper.capture(paper.pixels().bounds());
    std::string error;
    const auto now = fs::file_time_type::clock::now();
    for (int i = 0; i < kPictures; ++i) {
        const fs::path file = folder / ("picture_" + std::to_string(1700000000 - i) + ".bmp");
        if (i > kOnPage) {
            fs::create_hard_link(folder / ("picture_" + std::to_string(1700000000 - kOnPage) + ".bmp"), file);
            continue;
        }
        if (!host::savePicture(file, *picture, error, host::Sync::No)) std::abort();
        fs::last_write_time(file, now - std::chrono::minutes(i));
    }
}

void FirstPageOfAThousand(benchmark::State& state) {
    const TemporaryFolder folder;
    const host::Storage storage(folder.path());
    fill(folder.path() / "My pictures");
    TestDesk desk;
    host::Keeper keeper(storage, desk.languages, desk.text, desk.screen);
    std::vector<double> ours;
    std::vector<double> peer;
    std::string error;
    for (auto _ : state) {
        for (int round = 0; round < kRounds; ++round) {
            auto start = Clock::now();
            host::Explorer explorer(desk.desk, storage, keeper, {});
            explorer.show();
            ours.push_back(milliseconds(start));
            const std::vector<host::Tile> tiles = explorer.tiles();
            start = Clock::now();
            for (const host::Tile& tile : tiles) {
                if (tile.kind != host::Tile::Kind::Picture) continue;
                if (host::loadPicture(storage.resolve(tile.devicePath), error) == nullptr) std::abort();
            }
            peer.push_back(milliseconds(start));
        }
    }
    state.counters["ms"] = median(ours);
    state.counters["peer_ms"] = median(peer);
    state.counters["ratio"] = median(ours) / median(peer);
}
BENCHMARK(FirstPageOfAThousand)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
