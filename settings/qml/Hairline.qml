import QtQuick
import QtQuick.Window

// The thinnest line that there is, from side to side.
Rectangle {
    anchors { left: parent?.left; right: parent?.right }
    height: 1 / Screen.devicePixelRatio
    color: Theme.hairline
}
