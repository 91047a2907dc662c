#pragma once

#include "platform/foundation/Value.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

inline std::filesystem::path testData(const std::filesystem::path& name) {
    return std::filesystem::path(LUMORA_TEST_DATA) / name;
}

inline platform::Data readFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// The files of a folder with the given end of name, in a fixed order.
inline std::vector<std::filesystem::path> filesIn(const std::filesystem::path& folder, const std::string& ending) {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        if (entry.path().filename().string().ends_with(ending)) files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}
