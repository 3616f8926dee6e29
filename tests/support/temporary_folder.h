#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

/// A folder of its own for one test, removed with it.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "colour-test-XXXXXX").string();
        path_ = mkdtemp(name.data());
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

    /// Writes a file of that name, with the folders that it needs.
    std::filesystem::path write(const std::string& name, std::string_view content) const {
        std::filesystem::create_directories((path_ / name).parent_path());
        // A file written anew costs no disk access; one that is cut to nothing and filled again does.
        std::filesystem::remove(path_ / name);
        std::ofstream(path_ / name, std::ios::binary) << content;
        return path_ / name;
    }

private:
    std::filesystem::path path_;
};
