#include "settings/model/Clipboard.h"

#include <QClipboard>
#include <QGuiApplication>

namespace settings {

void Clipboard::copy(const QString& text) const {
    QGuiApplication::clipboard()->setText(text);
}

QString Clipboard::text() const {
    return QGuiApplication::clipboard()->text();
}

} // namespace settings
