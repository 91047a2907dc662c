// libplist, with keyed archives on top, for the tests to exchange archives with. Each line of standard input is
// answered by one:
//
//     libplist_peer read              archive in hexadecimal -> its value
//     libplist_peer again             archive -> the same value archived anew
//     libplist_peer write             value -> archive
//     libplist_peer write inline      the same, data and dates among the archived objects as they are
//
// Values are written as tests/interop/Form.h says. A line that starts with "!" says why there is no answer. Nothing of
// the library under test is used here; what is read is a tree of libplist's own nodes without UIDs, "plain" below.

#include <plist/plist.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <iomanip>
#include <iostream>
#include <map>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Node = std::unique_ptr<void, decltype(&plist_free)>;

std::string hexOf(std::string_view bytes) {
    static constexpr char digits[] = "0123456789abcdef";
    std::string hex;
    for (const char byte : bytes) {
        hex += digits[static_cast<unsigned char>(byte) >> 4U];
        hex += digits[static_cast<unsigned char>(byte) & 15U];
    }
    return hex;
}

std::string bytesOf(std::string_view hex) {
    std::string bytes;
    for (std::size_t i = 0; i < hex.size(); i += 2)
        bytes += static_cast<char>(std::stoi(std::string(hex.substr(i, 2)), nullptr, 16));
    return bytes;
}

std::string bitsOf(double real) {
    std::ostringstream bits;
    bits << std::hex << std::setw(16) << std::setfill('0') << std::bit_cast<std::uint64_t>(real);
    return bits.str();
}

double realOf(const std::string& bits) {
    return std::bit_cast<double>(static_cast<std::uint64_t>(std::stoull(bits, nullptr, 16)));
}

/// A value as both directions know it. What is no container stays the token that it is written as.
struct Plain {
    std::string token;            ///< "[" and "{" for containers
    std::vector<Plain> entries{}; ///< of a dictionary: keys and values in turn
};

Plain readForm(std::istream& tokens) {
    Plain value;
    tokens >> value.token;
    if (value.token != "[" && value.token != "{") return value;
    for (Plain entry = readForm(tokens); entry.token != "]" && entry.token != "}"; entry = readForm(tokens))
        value.entries.push_back(std::move(entry));
    return value;
}

void writeForm(const Plain& value, std::string& form) {
    form += value.token;
    if (value.token != "[" && value.token != "{") return;
    for (const Plain& entry : value.entries) {
        form += ' ';
        writeForm(entry, form);
    }
    form += value.token == "[" ? " ]" : " }";
}

/// A libplist before 2.3 knows no signs: to it, a negative number is what its bits mean without one.
plist_t integerNode(const std::string& digits) {
    if (digits[0] != '-') return plist_new_uint(std::stoull(digits));
#ifdef LIBPLIST_WITHOUT_SIGNS
    return plist_new_uint(static_cast<std::uint64_t>(std::stoll(digits)));
#else
    return plist_new_int(std::stoll(digits));
#endif
}

/// Lays a value out as archived objects, which refer to each other by UID. Equal texts and numbers are one object.
class Archiver {
  public:
    explicit Archiver(bool isInline) : inline_(isInline) {
        plist_array_append_item(objects_, plist_new_string("$null"));
    }

    std::string archive(const Plain& root) {
        plist_t top = plist_new_dict();
        plist_dict_set_item(top, "root", plist_new_uid(add(root)));
        const Node archive(plist_new_dict(), &plist_free);
        plist_dict_set_item(archive.get(), "$version", plist_new_uint(100000));
        plist_dict_set_item(archive.get(), "$archiver", plist_new_string("NSKeyedArchiver"));
        plist_dict_set_item(archive.get(), "$top", top);
        plist_dict_set_item(archive.get(), "$objects", objects_);
        char* bytes = nullptr;
        std::uint32_t size = 0;
        plist_to_bin(archive.get(), &bytes, &size);
        const std::string hex = hexOf({bytes, size});
        plist_mem_free(bytes);
        return hex;
    }

  private:
    using Fields = std::vector<std::pair<const char*, plist_t>>;

    std::uint64_t append(plist_t node) {
        plist_array_append_item(objects_, node);
        return plist_array_get_size(objects_) - 1;
    }

    std::uint64_t add(const Plain& value) {
        if (value.token == "n") return 0;
        if (value.token == "[" || value.token == "{") return addContainer(value);
        const auto known = known_.find(value.token);
        if (known != known_.end()) return known->second;
        const std::uint64_t uid = append(leaf(value.token));
        known_[value.token] = uid;
        return uid;
    }

    plist_t leaf(const std::string& token) {
        const std::string rest = token.substr(1);
        switch (token[0]) {
        case 't':
        case 'f':
            return plist_new_bool(token[0] == 't' ? 1 : 0);
        case 'i':
            return integerNode(rest);
        case 'r':
            return plist_new_real(realOf(rest));
        case 's':
            return plist_new_string(bytesOf(rest).c_str());
        case 'd': {
            const std::string bytes = bytesOf(rest);
            plist_t data = plist_new_data(bytes.data(), bytes.size());
            return inline_ ? data : instance("NSData", {{"NS.data", data}});
        }
        case 'w': {
            const double seconds = realOf(rest);
            if (!inline_) return instance("NSDate", {{"NS.time", plist_new_real(seconds)}});
            const double whole = std::floor(seconds);
            return plist_new_date(static_cast<std::int32_t>(whole),
                                  static_cast<std::int32_t>(std::lround((seconds - whole) * 1e6)));
        }
        default:
            throw std::runtime_error("no value: " + token);
        }
    }

    std::uint64_t addContainer(const Plain& value) {
        // The container takes its place before its entries do.
        const std::uint64_t uid = append(plist_new_bool(0));
        const bool dictionary = value.token == "{";
        Fields fields;
        if (dictionary) fields.emplace_back("NS.keys", plist_new_array());
        fields.emplace_back("NS.objects", plist_new_array());
        for (std::size_t i = 0; i < value.entries.size(); ++i) {
            const auto& [name, list] = dictionary && i % 2 == 0 ? fields.front() : fields.back();
            plist_array_append_item(list, plist_new_uid(add(value.entries[i])));
        }
        plist_array_set_item(objects_, instance(dictionary ? "NSDictionary" : "NSArray", fields),
                             static_cast<std::uint32_t>(uid));
        return uid;
    }

    plist_t instance(const char* className, const Fields& fields) {
        plist_t made = plist_new_dict();
        for (const auto& [name, node] : fields)
            plist_dict_set_item(made, name, node);
        std::uint64_t& uid = classes_[className];
        if (uid == 0) {
            plist_t bases = plist_new_array();
            plist_array_append_item(bases, plist_new_string(className));
            plist_array_append_item(bases, plist_new_string("NSObject"));
            plist_t described = plist_new_dict();
            plist_dict_set_item(described, "$classname", plist_new_string(className));
            plist_dict_set_item(described, "$classes", bases);
            uid = append(described);
        }
        plist_dict_set_item(made, "$class", plist_new_uid(uid));
        return made;
    }

    bool inline_;
    plist_t objects_ = plist_new_array(); ///< the archive's, from archive() on
    std::map<std::string, std::uint64_t> known_, classes_;
};

plist_t field(plist_t dictionary, const char* name, plist_type type) {
    plist_t found = plist_dict_get_item(dictionary, name);
    if (found == nullptr || plist_get_node_type(found) != type) throw std::runtime_error(std::string("no ") + name);
    return found;
}

/// What a node holds that is a text or data, by the function that gives it.
std::string contentsOf(plist_t node, const char* (*get)(plist_t, std::uint64_t*)) {
    std::uint64_t length = 0;
    const char* contents = get(node, &length);
    return {contents, static_cast<std::size_t>(length)};
}
std::string textOf(plist_t node) {
    return contentsOf(node, &plist_get_string_ptr);
}

std::uint64_t uidOf(plist_t node) {
    std::uint64_t uid = 0;
    plist_get_uid_val(node, &uid);
    return uid;
}

/// By iteration: asking for one entry after the other takes a time that grows with the square of their number.
std::vector<plist_t> entries(plist_t list) {
    std::vector<plist_t> found;
    plist_array_iter next = nullptr;
    plist_array_new_iter(list, &next);
    plist_t entry = nullptr;
    for (plist_array_next_item(list, next, &entry); entry != nullptr; plist_array_next_item(list, next, &entry))
        found.push_back(entry);
    std::free(next);
    return found;
}

/// Follows an archive through libplist's tree.
class Unarchiver {
  public:
    explicit Unarchiver(plist_t archive) : objects_(entries(field(archive, "$objects", PLIST_ARRAY))) {
        if (textOf(field(archive, "$archiver", PLIST_STRING)) != "NSKeyedArchiver")
            throw std::runtime_error("not a keyed archive");
    }

    Plain value(plist_t uidNode) {
        if (plist_get_node_type(uidNode) != PLIST_UID) throw std::runtime_error("no UID");
        const std::uint64_t uid = uidOf(uidNode);
        return uid == 0 ? Plain{"n"} : archived(object(uid));
    }

  private:
    plist_t object(std::uint64_t uid) {
        if (uid >= objects_.size()) throw std::runtime_error("a UID beyond $objects");
        return objects_[static_cast<std::size_t>(uid)];
    }

    Plain archived(plist_t node) {
        switch (plist_get_node_type(node)) {
        case PLIST_BOOLEAN: {
            std::uint8_t boolean = 0;
            plist_get_bool_val(node, &boolean);
            return {boolean != 0 ? "t" : "f"};
        }
        case PLIST_UINT: {
            // Negative numbers come as what their bits mean without a sign; so they do to those who could ask for it.
            std::uint64_t integer = 0;
            plist_get_uint_val(node, &integer);
            return {"i" + std::to_string(static_cast<std::int64_t>(integer))};
        }
        case PLIST_REAL: {
            double real = 0;
            plist_get_real_val(node, &real);
            return {"r" + bitsOf(real)};
        }
        case PLIST_STRING:
            return {"s" + hexOf(textOf(node))};
        case PLIST_DATA:
            return {"d" + hexOf(contentsOf(node, &plist_get_data_ptr))};
        case PLIST_DICT:
            return instance(node);
        default:
            throw std::runtime_error("an archived object of an unexpected kind");
        }
    }

    Plain instance(plist_t node) {
        const std::uint64_t uid = uidOf(field(node, "$class", PLIST_UID));
        const std::string name = textOf(field(object(uid), "$classname", PLIST_STRING));
        if (name == "NSDictionary") return container("{", node);
        if (name == "NSArray") return container("[", node);
        if (name != "NSDate") throw std::runtime_error("an unexpected class: " + name);
        double seconds = 0;
        plist_get_real_val(field(node, "NS.time", PLIST_REAL), &seconds);
        return {"w" + bitsOf(seconds)};
    }

    Plain container(const char* token, plist_t node) {
        const auto values = entries(field(node, "NS.objects", PLIST_ARRAY));
        const bool dictionary = *token == '{';
        const auto keys = dictionary ? entries(field(node, "NS.keys", PLIST_ARRAY)) : std::vector<plist_t>();
        if (dictionary && keys.size() != values.size()) throw std::runtime_error("a key or value is missing");
        Plain made{token};
        for (std::size_t i = 0; i < values.size(); ++i) {
            if (dictionary) made.entries.push_back(value(keys[i]));
            made.entries.push_back(value(values[i]));
        }
        return made;
    }

    std::vector<plist_t> objects_;
};

std::string answer(const std::string& line, std::string_view mode, bool isInline) {
    if (mode == "write") {
        std::istringstream tokens(line);
        return Archiver(isInline).archive(readForm(tokens));
    }
    const std::string bytes = bytesOf(line);
    plist_t parsed = nullptr;
    plist_from_bin(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &parsed);
    const Node archive(parsed, &plist_free);
    if (archive == nullptr) throw std::runtime_error("no property list");
    const Plain value = Unarchiver(parsed).value(field(field(parsed, "$top", PLIST_DICT), "root", PLIST_UID));
    if (mode == "again") return Archiver(isInline).archive(value);
    std::string form;
    writeForm(value, form);
    return form;
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string_view> arguments(argv + 1, argv + argc);
    if (arguments.empty()) return 2;
    const bool isInline = arguments.size() > 1 && arguments[1] == "inline";
    for (std::string line; std::getline(std::cin, line);) {
        try {
            std::cout << answer(line, arguments[0], isInline) << std::endl;
        } catch (const std::exception& problem) {
            std::cout << "! " << problem.what() << std::endl;
        }
    }
}
