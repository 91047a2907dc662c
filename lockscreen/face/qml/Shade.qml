import QtQuick
import LumoraFace

// Lies under a text of the look where the picture alone would make it hard to read.
Plate {
    required property var part
    readonly property rect frame: part.shade.frame

    x: frame.x
    y: frame.y
    width: frame.width
    height: frame.height
    visible: part.visible && part.shade.opacity > 0
    color: part.shade.color
    opacity: part.shade.opacity
    fade: part.shade.fade
}
