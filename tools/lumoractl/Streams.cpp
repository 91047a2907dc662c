#include "tools/lumoractl/Streams.h"

#include "json/Json.h"

#include "platform/foundation/Unicode.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <system_error>

using platform::Data;
using platform::Result;

namespace lumora {
namespace {

/// A file that is closed on leaving, unless it is one of the process's own streams.
class Stream {
  public:
    Stream(const std::string& name, const char* mode, std::FILE* standard)
        : own_(name != "-"), file_(own_ ? std::fopen(name.c_str(), mode) : standard) {}
    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;
    ~Stream() {
        if (own_ && file_) std::fclose(file_);
    }
    [[nodiscard]] std::FILE* file() const { return file_; }

  private:
    bool own_;
    std::FILE* file_;
};

std::string failure(const char* verb, const std::string& name, const char* standard) {
    return "cannot " + std::string(verb) + " " + (name == "-" ? standard : name) + ": " +
           std::generic_category().message(errno);
}

} // namespace

Result<Data> readAll(const std::string& name, std::size_t most) {
    const Stream stream(name, "rb", stdin);
    Data bytes;
    if (stream.file()) {
        std::array<std::uint8_t, 65536> block{};
        for (std::size_t got = 1; got > 0 && bytes.size() < most;) {
            got = std::fread(block.data(), 1, block.size(), stream.file());
            bytes.insert(bytes.end(), block.begin(), block.begin() + static_cast<std::ptrdiff_t>(got));
        }
    }
    if (!stream.file() || std::ferror(stream.file()))
        return Result<Data>::failure(failure("read", name, "standard input"));
    return bytes;
}

Result<void> writeAll(const std::string& name, const void* bytes, std::size_t size) {
    const Stream stream(name, "wb", stdout);
    // Flushing at once shows a full disk while there is still someone to tell.
    if (!stream.file() || std::fwrite(bytes, 1, size, stream.file()) != size || std::fflush(stream.file()) != 0)
        return Result<void>::failure(failure("write", name, "standard output"));
    return {};
}

Result<void> printJson(const platform::Value& value) {
    const Result<std::string> json = writeJson(value);
    return json ? printText(json.value() + "\n") : Result<void>::failure(json.error());
}

Result<void> printText(const std::string& text) {
    return writeAll("-", text.data(), text.size());
}

void complain(const std::string& what) {
    std::fputs((std::string(program_invocation_short_name) + ": " + platform::printable(what) + "\n").c_str(), stderr);
}

} // namespace lumora
