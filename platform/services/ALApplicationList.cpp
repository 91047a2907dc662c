#include "platform/services/ALApplicationList.h"

#include "applist/AppList.h"
#include "platform/foundation/Unicode.h"
#include "platform/ui/PictureSize.h"

#include <chrono>
#include <cmath>
#include <map>
#include <utility>

namespace platform {
namespace {

constexpr std::uint32_t kFirstVersion = 1;
constexpr std::uint32_t kVersionOfIconFiles = 2;
constexpr double kLargestIcon = 1024; // pixels each way

/// The library is a stranger's: a text that is not UTF-8 could not be saved and read again.
bool isText(const char* bytes) {
    return bytes && isUtf8(bytes);
}

void takeApplication(const char* identifier, const char* name, void* context) {
    if (isText(identifier) && *identifier && isText(name))
        static_cast<std::unordered_map<std::string, std::string>*>(context)->emplace(identifier, name);
}

void takePath(const char* path, void* context) {
    if (path) *static_cast<std::string*>(context) = path;
}

/// Larger pictures are not what was asked for, and decoding them may take all memory.
void takeIcon(const std::uint8_t* bytes, std::size_t length, void* context) {
    const auto size = bytes ? pngSize({bytes, length}) : std::nullopt;
    if (size && size->width <= kLargestIcon && size->height <= kLargestIcon)
        static_cast<Data*>(context)->assign(bytes, bytes + length);
}

/// Null without the picture of the first resolution.
UIImageRef iconOf(double size, PictureDecoder::Drawn drawn) {
    if (drawn[0].empty()) return nullptr;
    return std::make_shared<const UIImage>(CGSize{size, size}, std::move(drawn[0]), std::move(drawn[1]));
}

} // namespace

ALApplicationList* ALApplicationList::sharedApplicationList() {
    const auto* table = static_cast<const ALApplicationListClass*>(symbolOfOpenLibraries(AL_APPLICATION_LIST_SYMBOL));
    if (!table || table->version < kFirstVersion || table->version > AL_APPLICATION_LIST_VERSION ||
        !table->sharedApplicationList)
        return nullptr;
    ALSharedList* list = table->sharedApplicationList();
    if (!list) return nullptr;
    static auto& shared = *new std::map<ALSharedList*, ALApplicationList>;
    return &shared.try_emplace(list, *table, *list).first->second;
}

std::unordered_map<std::string, std::string> ALApplicationList::applications() const {
    std::unordered_map<std::string, std::string> found;
    found.reserve(1024); // more than most devices have
    if (table_->applications) table_->applications(list_, takeApplication, &found);
    return found;
}

UIImageRef ALApplicationList::iconOfSize(double size, const std::string& forDisplayIdentifier) const {
    PicturePatience patience(std::chrono::hours(1)); // the decoder's own limits are far below
    PictureOrderRef order;
    return iconOfSize(size, forDisplayIdentifier, patience, order, [](const UIImageRef&) {});
}

UIImageRef ALApplicationList::iconOfSize(double size, const std::string& forDisplayIdentifier,
                                         PicturePatience& patience, PictureOrderRef& order,
                                         std::function<void(UIImageRef)> later) const {
    order.reset();
    std::vector<PictureWanted> files = iconFiles(size, forDisplayIdentifier);
    if (files.empty()) return drawnByTheLibrary(size, forDisplayIdentifier);
    PictureDecoder& decoder = PictureDecoder::shared();
    order = decoder.order(std::move(files));
    const auto drawn =
        decoder.wait(order, patience, [size, later = std::move(later)](const PictureDecoder::Drawn& pictures) {
            later(iconOf(size, pictures));
        });
    if (!drawn) return nullptr;
    order.reset();
    return iconOf(size, *drawn);
}

/// Those of both resolutions; empty when the library does not know them, or does not tell.
std::vector<PictureWanted> ALApplicationList::iconFiles(double size, const std::string& identifier) const {
    std::vector<PictureWanted> files;
    if (table_->version < kVersionOfIconFiles || !table_->iconFileOfSize) return files;
    for (const int scale : {1, 2}) {
        std::string path;
        table_->iconFileOfSize(list_, size, scale, identifier.c_str(), takePath, &path);
        if (path.empty()) return {};
        files.push_back({path, static_cast<int>(std::lround(size * scale))});
    }
    return files;
}

UIImageRef ALApplicationList::drawnByTheLibrary(double size, const std::string& identifier) const {
    if (!table_->iconOfSize) return nullptr;
    PictureDecoder::Drawn drawn(2);
    table_->iconOfSize(list_, size, 1, identifier.c_str(), takeIcon, &drawn[0]);
    if (!drawn[0].empty()) table_->iconOfSize(list_, size, 2, identifier.c_str(), takeIcon, &drawn[1]);
    return iconOf(size, drawn);
}

} // namespace platform
