import QtQuick

// Where the next letter goes.
Rectangle {
    width: 2
    radius: 1
    color: Theme.accent
}
