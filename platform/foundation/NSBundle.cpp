#include "platform/foundation/NSBundle.h"

#include "platform/foundation/FileContents.h"
#include "platform/foundation/PropertyList.h"
#include "platform/foundation/SharedObject.h"

#include <algorithm>
#include <dlfcn.h>
#include <utility>

namespace platform {
namespace {

Dictionary readInfo(const std::filesystem::path& folder) {
    const Result<Value> info = readPropertyList(dataWithContentsOfFile(folder / "Info.plist").value_or(Data()));
    return info && info.value().dictionary() ? *info.value().dictionary() : Dictionary{};
}

std::string textOf(const Dictionary& info, std::string_view key) {
    const Value entry = info[key];
    return std::string(entry.text() ? *entry.text() : std::string_view());
}

/// True for a file name, false for anything that is a path.
bool isFileName(std::string_view name) {
    return name.find('/') == std::string_view::npos && name.find('\0') == std::string_view::npos;
}

bool isIdentifier(const std::string& name) {
    const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; };
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    return !name.empty() && !isDigit(name.front()) &&
           std::all_of(name.begin(), name.end(), [&](char c) { return isLetter(c) || isDigit(c); });
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

std::filesystem::path NSBundle::executablePath() const {
    const std::string executable = textOf(info_, "CFBundleExecutable");
    return executable.empty() || !isFileName(executable) ? std::filesystem::path() : folder_ / executable;
}

Result<void> NSBundle::load() {
    return load(FileCheck::WholeFile);
}

Result<void> NSBundle::load(FileCheck check) {
    if (loaded_) return {};
    const std::filesystem::path executable = executablePath();
    if (executable.empty())
        return Result<void>::failure(
            folder_.string() + " cannot be loaded: its Info.plist is missing, broken or names no CFBundleExecutable");
    const Result<void*> handle = loadSharedObject(executable, Binding::Now, check);
    if (!handle) return Result<void>::failure(handle.error());
    loaded_ = handle.value();
    return {};
}

Class NSBundle::principalClass() const {
    return NSClassFromString(textOf(info_, "NSPrincipalClass"));
}

const void* NSBundle::principalClassTable(const std::string& prefix) const {
    const std::string name = textOf(info_, "NSPrincipalClass");
    return loaded_ && isIdentifier(name) ? symbolIn(loaded_, prefix + name) : nullptr;
}

bool NSBundle::unload() {
    if (!loaded_) return false;
    dlclose(std::exchange(loaded_, nullptr)); // gives the loader's count back; what loadSharedObject() maps stays
    return true;
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
