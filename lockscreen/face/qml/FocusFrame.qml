import QtQuick

// Where the keyboard is.
Rectangle {
    required property rect frame

    x: frame.x - 3
    y: frame.y - 3
    width: frame.width + 6
    height: frame.height + 6
    color: "transparent"
    border.width: 3
    border.color: "#ffd27a"
}
