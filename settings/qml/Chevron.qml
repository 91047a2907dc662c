import QtQuick

// Two rotated bars, which need no image and are smooth with every backend. As large as the text beside it.
Item {
    id: root

    property color color: Theme.tertiary
    property bool pointsBack: false
    readonly property bool pointsLeft: pointsBack !== Theme.mirrored
    property real scaling: Theme.bodySize / Theme.usualSize
    property real size: 6 * scaling
    property real stroke: 2 * scaling

    implicitWidth: size + stroke
    implicitHeight: size * 2

    component Bar: Rectangle {
        property int side: 1

        anchors.centerIn: parent
        anchors.verticalCenterOffset: side * root.size / 2
        width: root.size * Math.SQRT2 + root.stroke
        height: root.stroke
        radius: height / 2
        rotation: side * (root.pointsLeft ? 45 : -45)
        color: root.color
        antialiasing: true
    }

    Bar { side: -1 }
    Bar { side: 1 }
}
