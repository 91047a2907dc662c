import QtQuick

// The thinnest line that the screen can show, from side to side.
Rectangle {
    anchors { left: parent?.left; right: parent?.right }
    height: 1 / Screen.devicePixelRatio
    color: Theme.hairline
}
