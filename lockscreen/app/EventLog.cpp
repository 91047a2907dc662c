#include "lockscreen/app/EventLog.h"

#include "lockscreen/Gesture.h"

#include "platform/foundation/Unicode.h"

#include <iostream>

namespace lumora {

std::string discreet(const std::string& line) {
    const auto gesture = Gesture::read(line);
    if (!gesture) return line; // an outcome, none of which has a digit of a passcode
    const std::string& target = gesture.value().target;
    if (target.starts_with("keys[")) return line.substr(0, line.find(target)) + "keys[•]";
    const bool isDigit = target.size() == 1 && target[0] >= '0' && target[0] <= '9';
    return gesture.value().kind == Gesture::Kind::key && isDigit ? "key •" : line;
}

Behaviour::Log eventLog(bool wanted) {
    if (!wanted) return {};
    return [](const std::string& line) { std::cout << platform::printable(discreet(line)) << std::endl; };
}

} // namespace lumora
