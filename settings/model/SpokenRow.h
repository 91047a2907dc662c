#pragma once

#include <QAccessibleObject>
#include <QQuickItem>

namespace settings {

/// What assistive tools are told of an item of QML whose actions have names of their own, as the toolkit knows no other
/// names than its own. The item says by its Accessible properties what it is, as usual, and in addition has
///
///     property var spokenActions: ["Move up"]   // all but the one to focus it
///     function act(action) {}
///
/// It has nothing in it of which assistive tools are told. GUI thread.
class SpokenRow final : public QAccessibleObject, public QAccessibleActionInterface {
  public:
    /// From then on, such items are spoken of like this.
    static void install();

    explicit SpokenRow(QQuickItem* item) : QAccessibleObject(item) {}

    [[nodiscard]] QAccessibleInterface* parent() const override;
    [[nodiscard]] QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
    [[nodiscard]] int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }
    [[nodiscard]] QWindow* window() const override;
    [[nodiscard]] QRect rect() const override;
    [[nodiscard]] QString text(QAccessible::Text text) const override;
    [[nodiscard]] QAccessible::Role role() const override;
    [[nodiscard]] QAccessible::State state() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    [[nodiscard]] QStringList actionNames() const override;
    void doAction(const QString& action) override;
    [[nodiscard]] QStringList keyBindingsForAction(const QString& /*action*/) const override { return {}; }

  private:
    [[nodiscard]] QQuickItem* item() const;
    [[nodiscard]] QVariant told(const char* property) const;
};

} // namespace settings
