import QtQuick

// Twelve spokes whose light goes round.
Item {
    id: root

    property int lit: 0

    implicitWidth: 36
    implicitHeight: 36

    NumberAnimation {
        target: root
        property: "lit"
        running: Theme.animated && root.visible
        from: 0
        to: 12
        duration: 1200
        loops: Animation.Infinite
    }
    Repeater {
        model: 12

        Rectangle {
            required property int index

            x: (root.width - width) / 2
            width: 3
            height: 10
            radius: 1.5
            color: Theme.secondary
            opacity: 1 - 0.75 * ((root.lit - index + 12) % 12) / 11
            antialiasing: true
            transform: Rotation { origin { x: 1.5; y: root.height / 2 } angle: index * 30 }
        }
    }
}
