import QtQuick

// The part of a switch or a slider that moves.
Rectangle {
    radius: height / 2
    color: Theme.knob
    border { width: 1; color: Theme.knobEdge }
    antialiasing: true
}
