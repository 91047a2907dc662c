import QtQuick

// A magnifier, as large as the text beside it.
Item {
    id: root

    property color color: Theme.secondary
    property real scaling: 1

    implicitWidth: 16 * scaling
    implicitHeight: 16 * scaling

    Rectangle {
        width: 11.5 * root.scaling
        height: width
        radius: width / 2
        color: "transparent"
        border { width: 1.8 * root.scaling; color: root.color }
        antialiasing: true
    }
    Rectangle {
        x: 12 * root.scaling - width / 2
        y: 12 * root.scaling - height / 2
        width: 7 * root.scaling
        height: 2 * root.scaling
        radius: height / 2
        rotation: 45
        color: root.color
        antialiasing: true
    }
}
