#include "profiles/Remark.h"

#include <array>

namespace profiles {

const char* nameOf(Remark::Kind kind) {
    static constexpr std::array names{"later", "entry", "secret", "unknown", "refused", "beyond", "absent"};
    return names.at(static_cast<std::size_t>(kind)); // in the order of the kinds
}

bool leavesOut(Remark::Kind kind) {
    return kind == Remark::Kind::secret || kind == Remark::Kind::unknown || kind == Remark::Kind::refused;
}

std::vector<std::string> linesOf(const std::vector<Remark>& remarks) {
    std::vector<std::string> lines;
    std::size_t secrets = 0;
    std::string keys;
    for (const Remark& remark : remarks) {
        if (remark.kind == Remark::Kind::secret) {
            keys += (secrets++ == 0 ? "" : ", ") + remark.key;
        } else {
            lines.push_back((remark.line == 0 ? "" : "line " + std::to_string(remark.line) + ": ") + remark.text);
        }
    }
    if (secrets > 0)
        lines.push_back(std::to_string(secrets) + (secrets == 1 ? " passcode was" : " passcodes were") +
                        " left out: " + keys);
    return lines;
}

} // namespace profiles
