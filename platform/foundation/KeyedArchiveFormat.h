#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace platform {

/// The texts that hold an archive together.
namespace name {
inline constexpr std::string_view version = "$version";
inline constexpr std::string_view archiver = "$archiver";
inline constexpr std::string_view keyedArchiver = "NSKeyedArchiver";
inline constexpr std::string_view top = "$top";
inline constexpr std::string_view root = "root";
inline constexpr std::string_view objects = "$objects";
inline constexpr std::string_view null = "$null";
inline constexpr std::string_view class_ = "$class";
inline constexpr std::string_view className = "$classname";
inline constexpr std::string_view classes = "$classes";
inline constexpr std::string_view baseClass = "NSObject";
inline constexpr std::string_view keys = "NS.keys";
inline constexpr std::string_view values = "NS.objects";
inline constexpr std::string_view text = "NS.string";
inline constexpr std::string_view data = "NS.data";
inline constexpr std::string_view time = "NS.time";
} // namespace name

/// The kind of value that an archived object is, by its class.
enum class Family : std::uint8_t { dictionary, list, date, data, text, null, unknown };

struct ClassName {
    std::string_view name;
    Family family;
};

/// A writer uses the first name of each family.
inline constexpr std::array classNames{
    ClassName{"NSDictionary", Family::dictionary},
    ClassName{"NSMutableDictionary", Family::dictionary},
    ClassName{"NSArray", Family::list},
    ClassName{"NSMutableArray", Family::list},
    ClassName{"NSData", Family::data},
    ClassName{"NSMutableData", Family::data},
    ClassName{"NSDate", Family::date},
    ClassName{"NSString", Family::text},
    ClassName{"NSMutableString", Family::text},
    ClassName{"NSNull", Family::null},
};

} // namespace platform
