#include "decoder/Picture.h"
#include "platform/services/PictureFrames.h"

#include <unistd.h>

#include <cerrno>
#include <string>

// lumora-pictures: draws pictures of strangers for another program, one after the other, for as long as that program
// asks on its standard input. How much it may take of the machine is that program's affair, which ends it when a
// picture is too dear.

namespace {

using platform::PictureAnswer;
using platform::PictureQuestion;

/// False at the end of what is asked.
bool readAll(void* into, std::size_t length) {
    auto* at = static_cast<char*>(into);
    while (length > 0) {
        const ssize_t got = ::read(STDIN_FILENO, at, length);
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) return false;
        at += got;
        length -= std::size_t(got);
    }
    return true;
}

/// False when nobody listens any more.
bool writeAll(const void* from, std::size_t length) {
    const auto* at = static_cast<const char*>(from);
    while (length > 0) {
        const ssize_t put = ::write(STDOUT_FILENO, at, length);
        if (put < 0 && errno == EINTR) continue;
        if (put <= 0) return false;
        at += put;
        length -= std::size_t(put);
    }
    return true;
}

} // namespace

int main() {
    PictureQuestion question;
    while (readAll(&question, sizeof question)) {
        if (question.mark != PictureQuestion::kMark || question.pathLength > PictureQuestion::kLongestPath ||
            question.pixels < 1 || question.pixels > PictureQuestion::kMostPixels)
            return 1;
        std::string path(question.pathLength, '\0');
        if (!readAll(path.data(), path.size())) return 1;
        const std::vector<std::uint8_t> png = decoder::drawPicture(path, int(question.pixels));
        PictureAnswer answer;
        answer.number = question.number;
        answer.length = std::uint32_t(png.size());
        if (!writeAll(&answer, sizeof answer) || !writeAll(png.data(), png.size())) return 1;
    }
    return 0;
}
