#include "platform/foundation/NSBundle.h"

#include "platform/foundation/PropertyList.h"
#include "platform/foundation/SharedObject.h"

#include <dlfcn.h>
#include <fstream>
#include <iterator>
#include <utility>

namespace platform {
namespace {

Dictionary readInfo(const std::filesystem::path& folder) {
    std::ifstream in(folder / "Info.plist", std::ios::binary);
    const Data bytes{std::istreambuf_iterator<char>(in), {}};
    const Result<Value> info = readPropertyList(bytes);
    return info && info.value().dictionary() ? *info.value().dictionary() : Dictionary{};
}

std::string textOf(const Dictionary& info, std::string_view key) {
    const Value entry = info[key];
    return entry.text() ? *entry.text() : std::string();
}

/// True for a file name, false for anything that is a path.
bool isFileName(std::string_view name) {
    return name.find('/') == std::string_view::npos && name.find('\0') == std::string_view::npos;
}

} // namespace

std::shared_ptr<NSBundle> NSBundle::bundleWithPath(const std::filesystem::path& folder) {
    std::error_code failed;
    return std::filesystem::is_directory(folder, failed) ? std::make_shared<NSBundle>(folder) : nullptr;
}

std::shared_ptr<NSBundle> NSBundle::bundleForClass(const std::type_info& type) {
    Dl_info where{};
    std::filesystem::path file;
    if (dladdr(&type, &where) && where.dli_fname) file = where.dli_fname;
    return std::make_shared<NSBundle>(file.parent_path());
}

NSBundle::NSBundle(std::filesystem::path folder) : folder_(std::move(folder)), info_(readInfo(folder_)) {
}

Result<bool> NSBundle::load() {
    if (loaded_) return true;
    const std::string executable = textOf(info_, "CFBundleExecutable");
    if (executable.empty() || !isFileName(executable))
        return Result<bool>::failure(
            folder_.string() + " cannot be loaded: its Info.plist is missing, broken or names no CFBundleExecutable");
    const Result<void*> handle = loadSharedObject(folder_ / executable);
    if (!handle) return Result<bool>::failure(handle.error());
    loaded_ = true;
    return true;
}

Class NSBundle::principalClass() const {
    return NSClassFromString(textOf(info_, "NSPrincipalClass"));
}

std::filesystem::path NSBundle::pathForResource(std::string_view name, std::string_view type) const {
    std::string file(name);
    if (!type.empty()) file.append(".").append(type);
    std::error_code failed;
    if (name.empty() || !isFileName(file)) return {};
    const std::filesystem::path path = folder_ / file;
    return std::filesystem::is_regular_file(path, failed) ? path : std::filesystem::path();
}

} // namespace platform
