#pragma once

#include <QQuickItem>
#include <QString>

namespace tests {

/// Whether an object is of a type of that name, which may be one of QML.
[[nodiscard]] bool isA(const QObject& object, const char* className);

/// The nearest item around it of one of these types, itself included.
template<class... Names>
const QQuickItem* around(const QQuickItem& item, Names... names) {
    for (const QQuickItem* ancestor = &item; ancestor; ancestor = ancestor->parentItem())
        if ((isA(*ancestor, names) || ...)) return ancestor;
    return nullptr;
}

/// The type of the item, or of the row that it is in, and its text.
[[nodiscard]] QString described(const QQuickItem& item);

} // namespace tests
