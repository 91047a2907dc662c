#include "decoder/Picture.h"
#include "platform/services/PictureFrames.h"

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

// lumora-pictures draws strangers' pictures for another program, one after the other, for as long as that program asks
// on its standard input. That program also limits how much of the machine this one takes, and ends it when a picture
// costs too much.

using platform::PictureAnswer;
using platform::PictureQuestion;

int main() {
    PictureQuestion question;
    while (std::fread(&question, sizeof question, 1, stdin) == 1) {
        if (question.mark != PictureQuestion::kMark || question.pathLength > PictureQuestion::kLongestPath ||
            question.pixels < 1 || question.pixels > PictureQuestion::kMostPixels)
            return 1;
        std::string path(question.pathLength, '\0');
        if (std::fread(path.data(), 1, path.size(), stdin) != path.size()) return 1;
        const std::vector<std::uint8_t> png = decoder::drawPicture(path, int(question.pixels));
        PictureAnswer answer;
        answer.number = question.number;
        answer.length = std::uint32_t(png.size());
        if (std::fwrite(&answer, sizeof answer, 1, stdout) != 1 ||
            std::fwrite(png.data(), 1, png.size(), stdout) != png.size() || std::fflush(stdout) != 0)
            return 1;
    }
    return 0;
}
