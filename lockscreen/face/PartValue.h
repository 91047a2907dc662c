#pragma once

#include "lockscreen/Look.h"

#include <QColor>
#include <QRectF>
#include <QString>
#include <QVariant>

#include <concepts>
#include <tuple>
#include <type_traits>
#include <vector>

namespace lumora {

/// Parts of a look as QML reads them: a map with an entry for each field, `clock.frame.width`. Lists of parts are left
/// out: they are models of their own (PartsModel.h). Any thread.
template<class T>
concept LookPart = requires {
    T::fields();
};

template<class T>
inline constexpr bool isPartList = false;
template<LookPart T>
inline constexpr bool isPartList<std::vector<T>> = true;

template<class T>
requires std::is_arithmetic_v<T>
[[nodiscard]] QVariant toQml(T number) {
    return number;
}
[[nodiscard]] inline QVariant toQml(const std::string& text) {
    return QString::fromStdString(text);
}
[[nodiscard]] inline QVariant toQml(const Color& color) {
    return QColor::fromRgbF(static_cast<float>(color.red), static_cast<float>(color.green),
                            static_cast<float>(color.blue));
}
[[nodiscard]] inline QRectF toQt(const platform::CGRect& rect) {
    return {rect.origin.x, rect.origin.y, rect.size.width, rect.size.height};
}
[[nodiscard]] inline QVariant toQml(const platform::CGRect& rect) {
    return toQt(rect);
}
[[nodiscard]] inline QVariant toQml(const std::vector<Surface>& stages) {
    QString letters;
    for (const Surface stage : stages)
        letters += QLatin1Char(static_cast<char>(stage));
    return letters;
}

template<LookPart T>
[[nodiscard]] QVariant toQml(const T& part) {
    QVariantMap map;
    std::apply(
        [&](const auto&... field) {
            const auto add = [&](const auto& one) {
                const auto& value = part.*one.member;
                if constexpr (!isPartList<std::remove_cvref_t<decltype(value)>>)
                    map.insert(QString::fromUtf8(one.name.data(), static_cast<qsizetype>(one.name.size())),
                               toQml(value));
            };
            (add(field), ...);
        },
        T::fields());
    return map;
}

} // namespace lumora
