import QtQuick

// Shows where the keyboard focus is.
Rectangle {
    radius: Theme.buttonRadius
    color: "transparent"
    border { width: 2; color: Theme.accent }
    antialiasing: true
}
