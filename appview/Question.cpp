#include "appview/Question.h"

#include "platform/foundation/NSKeyedArchiver.h"

#include <cmath>
#include <string>
#include <tuple>

using platform::Data;
using platform::Dictionary;
using platform::List;
using platform::Result;
using platform::Value;

namespace lumora {

bool DrawingQuestion::isLike(const DrawingQuestion& other) const {
    return std::tie(width, height, textScale, dark) ==
               std::tie(other.width, other.height, other.textScale, other.dark) &&
           meansTheSame(settings, other.settings);
}

Dictionary ownSettings(const Dictionary& all, std::string_view identifier) {
    const std::string beginning = std::string(identifier) + ".";
    Dictionary own;
    for (const auto& [key, value] : all)
        if (key.starts_with(beginning)) own.set(key, value);
    return own;
}

Result<Data> writeQuestion(const DrawingQuestion& question) {
    const std::tm& time = question.time;
    auto archive = platform::NSKeyedArchiver::archivedDataWithRootObject(Dictionary{
        {"width", question.width},
        {"height", question.height},
        {"textScale", question.textScale},
        {"dark", question.dark},
        {"time", List{time.tm_year, time.tm_mon, time.tm_mday, time.tm_wday, time.tm_hour, time.tm_min, time.tm_sec}},
        {"settings", question.settings}});
    return archive ? Result<Data>(std::move(*archive)) : Result<Data>::failure("no archive can hold its settings");
}

Result<DrawingQuestion> readQuestion(const Data& archive) {
    const auto fail = [] { return Result<DrawingQuestion>::failure("the question is none"); };
    const Result<Value> read = platform::NSKeyedUnarchiver::unarchive(archive);
    if (!read) return fail();
    const Value& root = read.value();
    const Value time = root["time"];
    const Value settings = root["settings"];
    if (!time.list() || time.list()->size() != 7 || !settings.dictionary()) return fail();
    DrawingQuestion question{root["width"].doubleValue(),
                             root["height"].doubleValue(),
                             root["textScale"].doubleValue(),
                             root["dark"].boolValue(),
                             {},
                             *settings.dictionary()};
    const auto part = [&](std::size_t at) { return static_cast<int>((*time.list())[at].integer().value_or(0)); };
    question.time.tm_year = part(0);
    question.time.tm_mon = part(1);
    question.time.tm_mday = part(2);
    question.time.tm_wday = part(3);
    question.time.tm_hour = part(4);
    question.time.tm_min = part(5);
    question.time.tm_sec = part(6);
    return question;
}

} // namespace lumora
