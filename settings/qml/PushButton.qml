import QtQuick
import QtQuick.Templates as T

// A button that does one thing at a tap, at Space and at Enter. What it looks like is up to each.
T.AbstractButton {
    focusPolicy: Qt.StrongFocus

    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
}
