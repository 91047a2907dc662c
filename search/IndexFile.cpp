#include "search/IndexFile.h"

#include "platform/foundation/FileDescriptor.h"
#include "platform/foundation/RegularFile.h"
#include "platform/foundation/UserFolder.h"
#include "search/Checksum.h"
#include "search/PageLine.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace search {

using platform::Result;

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kIndexFormat = "lumora-index 2 ";
constexpr std::size_t kIndexesToKeep = 4;
constexpr std::uint64_t kLargestIndex = std::uint64_t{16} << 20U;

/// The text of a file that only this user can have written.
std::optional<std::string> ownText(const fs::path& path) {
    const platform::RegularFile file(path);
    struct stat facts {};
    if (!file || file.size() > kLargestIndex || ::fstat(file.descriptor(), &facts) != 0 ||
        facts.st_uid != ::geteuid() || (facts.st_mode & (S_IWGRP | S_IWOTH)) != 0)
        return std::nullopt;
    std::string text(static_cast<std::size_t>(file.size()), '\0');
    return file.read(0, text.data(), text.size()) ? std::optional(std::move(text)) : std::nullopt;
}

/// Up to the next line's end, and that off the front; nothing when there is none.
std::optional<std::string_view> takeLine(std::string_view& text) {
    const std::size_t end = text.find('\n');
    if (end == std::string_view::npos) return std::nullopt;
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end + 1);
    return line;
}

std::string headerOf(std::string_view stamp, std::string_view lines) {
    return std::string(kIndexFormat) + checksumOf(lines) + " " + std::string(stamp);
}

Result<void> failed(const char* what, const fs::path& path) {
    return Result<void>::failure(std::string(what) + " " + path.string() + ": " + std::strerror(errno));
}

/// Removes the oldest indexes of a folder, and what writers that were ended have left. Silent about what cannot be
/// removed: the next one that writes tries again.
void removeOldest(const fs::path& folder) {
    std::vector<std::pair<fs::file_time_type, fs::path>> indexes;
    std::error_code unknown;
    for (const auto& each : std::vector(fs::directory_iterator(folder, unknown), fs::directory_iterator()))
        if (each.path().filename().native().starts_with("index"))
            indexes.emplace_back(each.last_write_time(unknown), each.path());
    std::ranges::sort(indexes, std::greater());
    for (std::size_t i = kIndexesToKeep; i < indexes.size(); ++i)
        fs::remove(indexes[i].second, unknown);
}

} // namespace

std::optional<KeptIndex> readIndex(const fs::path& file, std::string_view stamp) {
    const auto text = ownText(file);
    if (!text) return std::nullopt;
    std::string_view rest = *text;
    const auto header = takeLine(rest);
    if (!header || !header->starts_with(headerOf("", rest))) return std::nullopt;
    const bool current = !stamp.empty() && *header == headerOf(stamp, rest);
    std::vector<PageLine> lines;
    while (const auto line = takeLine(rest)) {
        auto page = readPageLine(*line);
        if (!page) return std::nullopt;
        lines.push_back(std::move(page).value());
    }
    if (!rest.empty() || lines.empty()) return std::nullopt;
    return KeptIndex{indexOf(std::move(lines)), current};
}

Result<void> writeIndex(const fs::path& path, const Index& index, std::string_view stamp) {
    std::string lines;
    for (const PageLine& line : linesOf(index)) {
        const Result<std::string> text = writePageLine(line);
        if (!text) return Result<void>::failure(text.error());
        lines += text.value() + "\n";
    }
    const std::string text = headerOf(stamp, lines) + "\n" + lines;
    if (text.size() > kLargestIndex) return Result<void>::failure("the index is too large to be kept");
    if (path.is_relative()) return Result<void>::failure("there is no folder for the index");
    if (const Result<void> made = platform::makeFolders(path.parent_path()); !made)
        return Result<void>::failure("cannot make " + path.parent_path().string() + ": " + made.error());
    // Each writer has a file of its own, so that the one that stands in the end is whole.
    std::string made = path.native() + ".XXXXXX";
    const platform::FileDescriptor file(::mkostemp(made.data(), O_CLOEXEC));
    if (!file) return failed("cannot write", path);
    const auto giveUp = [&](const char* what) {
        Result<void> why = failed(what, path);
        ::unlink(made.c_str());
        return why;
    };
    if (!file.write(text.data(), text.size())) return giveUp("cannot write");
    if (::rename(made.c_str(), path.c_str()) != 0) return giveUp("cannot replace");
    removeOldest(path.parent_path());
    return {};
}

} // namespace search
