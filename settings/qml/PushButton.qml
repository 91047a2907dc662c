import QtQuick
import QtQuick.Templates as T

// What does one thing when it is tapped, by Enter too. How it looks is up to each.
T.AbstractButton {
    focusPolicy: Qt.StrongFocus

    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
}
