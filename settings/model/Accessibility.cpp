#include "settings/model/Accessibility.h"

#include <QAccessible>
#include <QAccessibleObject>
#include <QList>
#include <QQuickItem>
#include <QQuickWindow>

#include <algorithm>

namespace settings {

namespace {

/// What QML says of an item by its Accessible properties; null when it says nothing.
const QObject* spokenOf(const QQuickItem& item) {
    const auto& children = item.children();
    const auto found = std::ranges::find_if(
        children, [](const QObject* child) { return child->inherits("QQuickAccessibleAttached"); });
    return found == children.end() ? nullptr : *found;
}

/// The item's interface; null when assistive tools are told nothing of it.
QAccessibleInterface* told(QQuickItem& item) {
    const QObject* spoken = spokenOf(item);
    return spoken && !spoken->property("ignored").toBool() ? QAccessible::queryAccessibleInterface(&item) : nullptr;
}

/// What assistive tools find right inside of an item.
void gather(const QQuickItem& item, QList<QAccessibleInterface*>& all) {
    for (QQuickItem* child : item.childItems()) {
        if (QAccessibleInterface* found = told(*child))
            all << found;
        else
            gather(*child, all);
    }
}

/// A part of the window. While it is disabled, nothing in it is told of, as the toolkit would tell of it as enabled.
class SpokenItem : public QAccessibleObject {
  public:
    using QAccessibleObject::QAccessibleObject;

    [[nodiscard]] QAccessibleInterface* parent() const override {
        for (QQuickItem* at = item().parentItem(); at; at = at->parentItem())
            if (QAccessibleInterface* around = told(*at)) return around;
        return QAccessible::queryAccessibleInterface(window());
    }
    [[nodiscard]] QAccessibleInterface* child(int index) const override { return inside().value(index); }
    [[nodiscard]] int childCount() const override { return int(inside().size()); }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override {
        return int(inside().indexOf(const_cast<QAccessibleInterface*>(child)));
    }
    [[nodiscard]] QAccessibleInterface* childAt(int x, int y) const override {
        for (QAccessibleInterface* found : inside())
            if (!found->state().invisible && found->rect().contains(x, y)) return found;
        return nullptr;
    }
    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        if (kind == QAccessible::Name) return said("name").toString();
        return kind == QAccessible::Description ? said("description").toString() : QString();
    }
    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::Role(said("role").toInt()); }
    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state;
        state.disabled = !item().isEnabled();
        state.focusable = said("focusable").toBool();
        state.focused = item().hasActiveFocus();
        state.invisible = !item().isVisible() || !window() || !window()->isVisible() || rect().isEmpty();
        state.offscreen = !window() || !window()->geometry().intersects(rect());
        return state;
    }
    [[nodiscard]] QRect rect() const override {
        if (!window()) return {};
        const QRect place = item().mapRectToScene(QRectF(0, 0, item().width(), item().height())).toRect();
        return {window()->mapToGlobal(place.topLeft()), place.size()};
    }
    [[nodiscard]] QWindow* window() const override { return item().window(); }

  protected:
    [[nodiscard]] QQuickItem& item() const { return static_cast<QQuickItem&>(*object()); }
    [[nodiscard]] QVariant said(const char* what) const {
        const QObject* spoken = spokenOf(item());
        return spoken ? spoken->property(what) : QVariant();
    }

  private:
    [[nodiscard]] QList<QAccessibleInterface*> inside() const {
        QList<QAccessibleInterface*> all;
        if (item().isEnabled()) gather(item(), all);
        return all;
    }
};

/// A row of a table, whose actions have names of their own: its "spokenActions", which its function "act" does.
class SpokenRow : public SpokenItem, public QAccessibleActionInterface {
  public:
    using SpokenItem::SpokenItem;

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : SpokenItem::interface_cast(type);
    }
    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state = SpokenItem::state();
        state.checkable = said("checkable").toBool();
        state.checked = said("checked").toBool();
        return state;
    }
    [[nodiscard]] QStringList actionNames() const override {
        return item().property("spokenActions").toStringList() << setFocusAction();
    }
    void doAction(const QString& action) override {
        if (!item().isEnabled()) return;
        if (action == setFocusAction())
            item().forceActiveFocus(Qt::OtherFocusReason);
        else if (actionNames().contains(action))
            QMetaObject::invokeMethod(&item(), "act", Q_ARG(QVariant, action));
    }
    [[nodiscard]] QStringList keyBindingsForAction(const QString& /*action*/) const override { return {}; }
};

class SpokenDialog : public SpokenItem {
  public:
    using SpokenItem::SpokenItem;

    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state = SpokenItem::state();
        state.modal = true;
        return state;
    }
};

/// A text to read, by its name, which says all of it.
class SpokenText : public SpokenItem, public QAccessibleTextInterface {
  public:
    using SpokenItem::SpokenItem;

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::TextInterface ? static_cast<QAccessibleTextInterface*>(this)
                                                  : SpokenItem::interface_cast(type);
    }
    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state = SpokenItem::state();
        state.readOnly = true;
        return state;
    }

    using SpokenItem::text;
    [[nodiscard]] QString text(int start, int end) const override { return whole().mid(start, end - start); }
    [[nodiscard]] int characterCount() const override { return int(whole().size()); }
    [[nodiscard]] QRect characterRect(int /*offset*/) const override { return rect(); }
    [[nodiscard]] int offsetAtPoint(const QPoint& point) const override { return rect().contains(point) ? 0 : -1; }
    [[nodiscard]] QString attributes(int /*offset*/, int* start, int* end) const override {
        *start = 0;
        *end = characterCount();
        return {};
    }
    void scrollToSubstring(int /*start*/, int /*end*/) override {}
    // Nothing of it can be selected, and there is no cursor.
    void selection(int /*index*/, int* start, int* end) const override { *start = *end = 0; }
    [[nodiscard]] int selectionCount() const override { return 0; }
    void addSelection(int /*start*/, int /*end*/) override {}
    void removeSelection(int /*index*/) override {}
    void setSelection(int /*index*/, int /*start*/, int /*end*/) override {}
    [[nodiscard]] int cursorPosition() const override { return 0; }
    void setCursorPosition(int /*position*/) override {}

  private:
    [[nodiscard]] QString whole() const { return text(QAccessible::Name); }
};

/// Asked for an item before QML has said what it is, and so only its class tells.
QAccessibleInterface* make(const QString& className, QObject* object) {
    const auto is = [&](const char* name) { return className.startsWith(QLatin1String(name)); };
    const auto* item = qobject_cast<QQuickItem*>(object);
    if (!item || !spokenOf(*item)) return nullptr;
    if (className == QStringLiteral("QQuickText") || is("TextParagraph_")) return new SpokenText(object);
    if (is("Sheet_")) return new SpokenDialog(object);
    if (is("TableSectionRow_")) return new SpokenRow(object);
    const bool isPart = is("PageStack_") || is("Page_") || is("WaitingScreen_") || is("TweakNotice_");
    return isPart ? new SpokenItem(object) : nullptr;
}

} // namespace

void completeAccessibility() {
    QAccessible::installFactory(make);
}

} // namespace settings
