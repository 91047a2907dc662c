#pragma once

#include "platform/ui/CGGeometry.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <utility>

namespace settings {

/// In how many columns the window shows its pages, as the user wants it: one, or two where there is room. Lengths are in
/// points. GUI thread.
class Panes : public QObject {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(int columns READ columns WRITE setColumns NOTIFY changed)
    Q_PROPERTY(double divider READ divider WRITE setDivider NOTIFY changed)
    Q_PROPERTY(bool offered MEMBER offered NOTIFY changed)
    Q_PROPERTY(double narrowest READ narrowest CONSTANT)
    Q_PROPERTY(double widest READ widest CONSTANT)

  public:
    /// Of the list, which is the first of two columns.
    static constexpr double kNarrowest = 320;
    static constexpr double kWidest = 390;
    /// What two columns need, of which the height includes the bar.
    static constexpr platform::CGSize kRoomForTwo{720, 480};
    /// Of a view that a page hosts, in the second column.
    static constexpr double kWidestView = 640;

    using QObject::QObject;

    bool offered = true; ///< there is a menu to choose the columns from

    /// The most that the user wants: 1 or 2.
    [[nodiscard]] int columns() const { return columns_; }
    void setColumns(int columns) { set(columns_, columns); }
    /// Where the user has put the divider, as the width of the list; 0 for nowhere.
    [[nodiscard]] double divider() const { return divider_; }
    void setDivider(double divider) { set(divider_, divider); }

    [[nodiscard]] static double narrowest() { return kNarrowest; }
    [[nodiscard]] static double widest() { return kWidest; }

    /// The width of the list in an area of that size, 0 where there is one column.
    [[nodiscard]] static double listWidthIn(platform::CGSize area, int columns, double divider);
    Q_INVOKABLE [[nodiscard]] double listWidthIn(double width, double height, int columns, double divider) const {
        return listWidthIn({width, height}, columns, divider);
    }
    Q_INVOKABLE [[nodiscard]] bool hasRoomIn(double width, double height) const {
        return width >= kRoomForTwo.width && height >= kRoomForTwo.height;
    }
    /// How much of an area of that width the page on top has for a view that it hosts.
    Q_INVOKABLE [[nodiscard]] static double viewWidthIn(double width, double listWidth);

  signals:
    void changed();

  private:
    void set(auto& part, auto value) {
        if (std::exchange(part, value) != value) emit changed();
    }

    int columns_ = 2;
    double divider_ = 0;
};

} // namespace settings
