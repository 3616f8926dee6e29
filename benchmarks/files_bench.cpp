// Saving and loading a picture of the canvas's size at 1404 × 1872, against write and read of as many bytes.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "paired.h"
#include "platform/host/files/picture_file.h"

namespace {

constexpr int kWidth = 1404;
constexpr int kHeight = 1764;
constexpr int kRounds = 200;

/// A folder on the machine's disk, and a picture with something on it.
struct Scene {
    Scene() : picture(host::makeBitmap(kWidth, kHeight, 24)) {
        std::string pattern = (std::filesystem::temp_directory_path() / "colour-bench-XXXXXX").string();
        folder = ::mkdtemp(pattern.data());
        std::uint8_t* pixels = bitmap_pixels(picture.get());
        for (std::size_t i = 0; i < host::pixelBytes(*picture); ++i) pixels[i] = static_cast<std::uint8_t>(i * i >> 9);
    }
    ~Scene() { std::filesystem::remove_all(folder); }

    std::filesystem::path folder;
    host::BitmapPtr picture;
};

void writeBytes(const std::filesystem::path& file, const std::uint8_t* bytes, std::size_t size) {
    const int descriptor = ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
    if (::write(descriptor, bytes, size) != static_cast<ssize_t>(size)) std::abort();
    ::close(descriptor);
}

void SavingThePage(benchmark::State& state) {
    const Scene scene;
    std::vector<double> ours;
    std::vector<double> peer;
    std::string error;
    for (auto _ : state) {
        for (int round = 0; round < kRounds; ++round) {
            std::filesystem::remove(scene.folder / "ours.bmp");
            std::filesystem::remove(scene.folder / "peer.bmp");
            ours.push_back(timed([&] {
                if (!host::savePicture(scene.folder / "ours.bmp", *scene.picture, error, host::Sync::No)) std::abort();
            }));
            peer.push_back(timed([&] {
                writeBytes(scene.folder / "peer.bmp", bitmap_pixels(scene.picture.get()),
                           host::pixelBytes(*scene.picture));
            }));
        }
    }
    reportRatio(state, ours, peer);
}
BENCHMARK(SavingThePage)->Iterations(1)->Unit(benchmark::kMillisecond);

void LoadingThePage(benchmark::State& state) {
    const Scene scene;
    const std::filesystem::path file = scene.folder / "page.bmp";
    std::vector<double> ours;
    std::vector<double> peer;
    std::string error;
    if (!host::savePicture(file, *scene.picture, error)) std::abort();
    for (auto _ : state) {
        for (int round = 0; round < kRounds; ++round) {
            host::BitmapPtr loaded;
            ours.push_back(timed([&] { loaded = host::loadPicture(file, error); }));
            if (loaded == nullptr) std::abort();
            peer.push_back(timed([&] {
                const std::size_t size = host::pixelBytes(*loaded);
                const std::unique_ptr<void, decltype(&std::free)> fresh(std::malloc(size), &std::free);
                const int descriptor = ::open(file.c_str(), O_RDONLY);
                if (::read(descriptor, fresh.get(), size) != static_cast<ssize_t>(size)) std::abort();
                ::close(descriptor);
            }));
        }
    }
    reportRatio(state, ours, peer);
}
BENCHMARK(LoadingThePage)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
