#pragma once

#include <filesystem>
#include <fstream>
#include <string>

inline void writeFile(const std::filesystem::path& file, const std::string& text) {
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << text;
}
