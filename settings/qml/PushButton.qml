import QtQuick
import QtQuick.Templates as T

// A button that does one thing at a tap, at Space and at Enter. What it looks like is up to each.
T.AbstractButton {
    id: root

    focusPolicy: Qt.StrongFocus
    containmentMask: TouchMask { item: root }

    Keys.forwardTo: [keys]

    ButtonKeys {
        id: keys

        onReleased: root.clicked()
    }
}
