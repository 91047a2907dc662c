import QtQuick

// What a row of a table is moved by: three bars.
Column {
    id: root

    property real scaling: 1

    spacing: 4 * scaling

    Repeater {
        model: 3

        Rectangle {
            width: 20 * root.scaling
            height: 2 * root.scaling
            radius: height / 2
            color: Theme.tertiary
        }
    }
}
