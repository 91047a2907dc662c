import QtQuick

// The shadow of what stands above the page, a little below it: pale boxes on top of one another, which every renderer
// draws in no time.
Item {
    id: root

    property real radius: Theme.rowRadius
    readonly property int depth: 10

    Repeater {
        model: root.depth

        Rectangle {
            required property int index

            x: -index
            y: 3 - index
            width: root.width + 2 * index
            height: root.height + 2 * index
            radius: root.radius + index
            color: Theme.shadow
            antialiasing: true
        }
    }
}
