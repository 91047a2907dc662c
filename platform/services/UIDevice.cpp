#include "platform/services/UIDevice.h"

#include "platform/foundation/FileContents.h"

#include <sstream>
#include <sys/utsname.h>

namespace platform {
namespace {

/// A value as a shell would read it: in quotes or bare, a backslash before what would mean something.
std::string unquoted(const std::string& written) {
    std::string value;
    char quote = 0;
    for (std::size_t i = 0; i < written.size(); ++i) {
        const char letter = written[i];
        if (quote == 0 && (letter == ' ' || letter == '\t' || letter == '\r')) break;
        if (letter == quote)
            quote = 0;
        else if (quote == 0 && (letter == '"' || letter == '\''))
            quote = letter;
        else if (letter == '\\' && quote != '\'' && i + 1 < written.size())
            value += written[++i];
        else
            value += letter;
    }
    return value;
}

std::string versionIn(const std::string& releaseFile) {
    static const std::string key = "VERSION_ID=";
    std::istringstream lines(releaseFile);
    std::string version;
    for (std::string line; std::getline(lines, line);)
        if (line.starts_with(key)) version = unquoted(line.substr(key.size()));
    return version;
}

} // namespace

const UIDevice& UIDevice::currentDevice() {
    static const UIDevice device({"/etc/os-release", "/usr/lib/os-release"});
    return device;
}

std::string UIDevice::systemVersion() const {
    for (const std::filesystem::path& file : releaseFiles_) {
        const auto text = stringWithContentsOfFile(file);
        if (!text) continue;
        if (std::string version = versionIn(*text); !version.empty()) return version;
        break; // rolling releases have no number
    }
    utsname names{};
    return uname(&names) == 0 ? names.release : std::string();
}

} // namespace platform
