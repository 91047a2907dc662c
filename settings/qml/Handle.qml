import QtQuick

// What a row of a table is moved by: three bars. Their length is fixed, as longer ones would take room from the title.
Column {
    id: root

    property real scaling: 1

    spacing: 4 * scaling

    Repeater {
        model: 3

        Rectangle {
            width: 20
            height: 2 * root.scaling
            radius: height / 2
            color: Theme.tertiary
        }
    }
}
