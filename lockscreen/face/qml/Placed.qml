import QtQuick

// What stands where a part of the look says.
Item {
    required property var part

    x: part.frame.x
    y: part.frame.y
    width: part.frame.width
    height: part.frame.height
    visible: part.visible
}
