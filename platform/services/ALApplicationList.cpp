#include "platform/services/ALApplicationList.h"

#include "applist/AppList.h"
#include "platform/foundation/Unicode.h"

#include <algorithm>
#include <array>
#include <map>

namespace platform {
namespace {

/// The library is somebody else's: a text of it that is no UTF-8 could not be saved and read again.
bool isText(const char* bytes) {
    return bytes && isUtf8(bytes);
}

void takeApplication(const char* identifier, const char* name, void* context) {
    if (isText(identifier) && *identifier && isText(name))
        static_cast<std::unordered_map<std::string, std::string>*>(context)->emplace(identifier, name);
}

void takeIcon(const std::uint8_t* bytes, std::size_t length, void* context) {
    static constexpr std::array<std::uint8_t, 8> png{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    if (bytes && length > png.size() && std::equal(png.begin(), png.end(), bytes))
        static_cast<Data*>(context)->assign(bytes, bytes + length);
}

} // namespace

ALApplicationList* ALApplicationList::sharedApplicationList() {
    const auto* table = static_cast<const ALApplicationListClass*>(symbolOfOpenLibraries(AL_APPLICATION_LIST_SYMBOL));
    if (!table || table->version != AL_APPLICATION_LIST_VERSION || !table->sharedApplicationList) return nullptr;
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
    if (!table_->iconOfSize) return nullptr;
    Data once;
    Data twice;
    table_->iconOfSize(list_, size, 1, forDisplayIdentifier.c_str(), takeIcon, &once);
    if (once.empty()) return nullptr;
    table_->iconOfSize(list_, size, 2, forDisplayIdentifier.c_str(), takeIcon, &twice);
    return std::make_shared<const UIImage>(CGSize{size, size}, std::move(once), std::move(twice));
}

} // namespace platform
