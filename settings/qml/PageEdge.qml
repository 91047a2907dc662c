import QtQuick

// The shadow that a page casts on the one beneath while it moves: beside its beginning, and darkest there.
Rectangle {
    id: root

    readonly property color darkest: Theme.dark ? "#80000000" : "#24000000"

    width: 12
    gradient: Gradient {
        orientation: Gradient.Horizontal

        GradientStop { position: 0; color: Theme.mirrored ? root.darkest : "transparent" }
        GradientStop { position: 1; color: Theme.mirrored ? "transparent" : root.darkest }
    }
}
