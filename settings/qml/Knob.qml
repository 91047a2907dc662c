import QtQuick

// What a switch or a slider is moved by.
Rectangle {
    radius: height / 2
    color: Theme.knob
    border { width: 1; color: Theme.knobEdge }
    antialiasing: true
}
