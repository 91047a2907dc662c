import QtQuick

// Drawn as two bars, so that no font has to have the sign. As large as the text beside it.
Item {
    id: root

    property color color: Theme.accent
    property real scaling: Theme.bodySize / Theme.usualSize

    implicitWidth: Math.round(16 * scaling)
    implicitHeight: Math.round(14 * scaling)

    component Bar: Rectangle {
        height: 2.25 * root.scaling
        radius: height / 2
        color: root.color
        antialiasing: true
        transformOrigin: Item.Left
    }

    Bar { x: root.scaling; y: 7 * root.scaling; width: 7 * root.scaling; rotation: 47 }
    Bar { x: 5.2 * root.scaling; y: 12 * root.scaling; width: 13.5 * root.scaling; rotation: -57 }
}
