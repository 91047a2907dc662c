import QtQuick

// A ring that spreads from beneath a finger once it has pressed for long enough: what a phone would say by a tap against
// the hand.
Rectangle {
    id: root

    property point at
    property bool shown: false
    property real spread // from 0 to 1

    visible: spreading.running
    x: at.x - width / 2
    y: at.y - height / 2
    width: 44 + 60 * spread
    height: width
    radius: width / 2
    color: Qt.alpha(Theme.accent, 0.12 * (1 - spread))
    border { width: 3; color: Qt.alpha(Theme.accent, 0.7 * (1 - spread)) }
    antialiasing: true

    onShownChanged: {
        if (shown && Theme.animated)
            spreading.restart();
        else
            spreading.stop();
    }

    NumberAnimation on spread {
        id: spreading

        running: false
        from: 0
        to: 1
        duration: 2 * Theme.moveTime
        easing.type: Easing.OutCubic
    }
}
