import QtQuick

// How rows and knobs get to their places.
NumberAnimation {
    duration: Theme.moveTime
    easing.type: Easing.OutCubic
}
