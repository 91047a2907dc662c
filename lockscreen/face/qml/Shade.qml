import QtQuick

// Lies under a text of the look where the picture alone would make it hard to read.
Rectangle {
    required property var part
    readonly property rect frame: part.shade.frame

    x: frame.x
    y: frame.y
    width: frame.width
    height: frame.height
    visible: part.visible && part.shade.opacity > 0
    radius: frame.x > 0 ? Math.min(12, height / 2) : 0 // the status bar reaches the edges
    color: part.shade.color
    opacity: part.shade.opacity
}
