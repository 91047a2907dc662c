import QtQuick

// Drawn from two bars, so that it does not depend on a font that has the sign.
Item {
    id: root

    property color color: Theme.accent

    implicitWidth: 16
    implicitHeight: 14

    component Bar: Rectangle {
        height: 2.25
        radius: height / 2
        color: root.color
        antialiasing: true
        transformOrigin: Item.Left
    }

    Bar { x: 1; y: 7; width: 7; rotation: 47 }
    Bar { x: 5.2; y: 12; width: 13.5; rotation: -57 }
}
