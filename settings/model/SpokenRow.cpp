#include "settings/model/SpokenRow.h"

#include <QQuickWindow>

#include <algorithm>

namespace settings {

namespace {

/// What holds the Accessible properties of an item; null for one without.
QObject* accessibleOf(const QObject& item) {
    const QObjectList& parts = item.children();
    const auto found =
        std::ranges::find_if(parts, [](const QObject* part) { return part->inherits("QQuickAccessibleAttached"); });
    return found == parts.end() ? nullptr : *found;
}

QAccessibleInterface* make(const QString& /*className*/, QObject* object) {
    auto* item = qobject_cast<QQuickItem*>(object);
    const bool isSuch = item && item->metaObject()->indexOfProperty("spokenActions") >= 0;
    return isSuch ? new SpokenRow(item) : nullptr;
}

} // namespace

void SpokenRow::install() {
    [[maybe_unused]] static const bool once = [] {
        QAccessible::installFactory(make);
        return true;
    }();
}

QQuickItem* SpokenRow::item() const {
    return qobject_cast<QQuickItem*>(object());
}

QVariant SpokenRow::told(const char* property) const {
    const QObject* told = item() ? accessibleOf(*item()) : nullptr;
    return told ? told->property(property) : QVariant();
}

/// The nearest item around it of which assistive tools are told.
QAccessibleInterface* SpokenRow::parent() const {
    for (QQuickItem* around = item() ? item()->parentItem() : nullptr; around; around = around->parentItem()) {
        const QObject* accessible = accessibleOf(*around);
        if (accessible && !accessible->property("ignored").toBool())
            return QAccessible::queryAccessibleInterface(around);
    }
    return QAccessible::queryAccessibleInterface(window());
}

QWindow* SpokenRow::window() const {
    return item() ? item()->window() : nullptr;
}

QRect SpokenRow::rect() const {
    if (!window()) return {};
    const QRectF place = item()->mapRectToScene(QRectF(0, 0, item()->width(), item()->height()));
    return {window()->mapToGlobal(place.topLeft().toPoint()), place.size().toSize()};
}

QString SpokenRow::text(QAccessible::Text text) const {
    switch (text) {
    case QAccessible::Name:
        return told("name").toString();
    case QAccessible::Description:
        return told("description").toString();
    default:
        return {};
    }
}

QAccessible::Role SpokenRow::role() const {
    const QVariant role = told("role");
    return role.isValid() ? static_cast<QAccessible::Role>(role.toInt()) : QAccessible::NoRole;
}

QAccessible::State SpokenRow::state() const {
    QAccessible::State state;
    state.checkable = told("checkable").toBool();
    state.checked = told("checked").toBool();
    state.focusable = told("focusable").toBool();
    state.focused = item() && item()->hasActiveFocus();
    state.disabled = !item() || !item()->isEnabled();
    state.invisible = !window() || !window()->isVisible() || !item()->isVisible();
    state.offscreen = state.invisible || !QRect(window()->mapToGlobal(QPoint()), window()->size()).intersects(rect());
    return state;
}

void* SpokenRow::interface_cast(QAccessible::InterfaceType type) {
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
}

QStringList SpokenRow::actionNames() const {
    if (!item()) return {};
    QStringList names = item()->property("spokenActions").toStringList();
    if (told("focusable").toBool()) names << setFocusAction();
    return names;
}

void SpokenRow::doAction(const QString& action) {
    if (!item() || !item()->isEnabled()) return;
    if (action == setFocusAction())
        item()->forceActiveFocus(Qt::OtherFocusReason);
    else if (actionNames().contains(action))
        QMetaObject::invokeMethod(item(), "act", Q_ARG(QVariant, action));
}

} // namespace settings
