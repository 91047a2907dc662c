#include "tests/settings/layout/Items.h"

#include <QMetaObject>
#include <QVariant>

#include <cstring>

namespace tests {

bool isA(const QObject& object, const char* className) {
    for (const QMetaObject* type = object.metaObject(); type; type = type->superClass())
        if (std::strncmp(type->className(), className, std::strlen(className)) == 0) return true;
    return false;
}

QString described(const QQuickItem& item) {
    QString text = item.property("text").toString();
    if (text.size() > 40) text = text.left(40) + "…";
    const QQuickItem* row =
        around(item, "TappableRow", "LinkRow", "OptionRow", "ButtonRow", "SwitchRow", "FieldRow", "SliderRow",
               "StaticRow", "TableRow", "Caption", "NavigationBar", "Composer", "WaitingScreen", "TextPage");
    const QString type = QString::fromLatin1((row ? *row : item).metaObject()->className()).section(u'_', 0, 0);
    return type + " “" + text.simplified() + "”";
}

} // namespace tests
