import QtQuick

// Shows for a moment where one has come to, and says it where nothing takes the focus.
Rectangle {
    id: root

    property string said
    readonly property bool shown: fade.running

    visible: shown
    color: Theme.accent
    radius: Theme.rowRadius
    antialiasing: true
    Accessible.role: Accessible.AlertMessage
    Accessible.name: said
    Accessible.ignored: !shown || said.length === 0

    function show(place, words) {
        said = words;
        x = place.x;
        y = place.y;
        width = place.width;
        height = place.height;
        fade.restart();
    }

    SequentialAnimation {
        id: fade

        PropertyAction { target: root; property: "opacity"; value: 0.3 }
        PauseAnimation { duration: Theme.animated ? 0 : Theme.landingTime }
        NumberAnimation { target: root; property: "opacity"; to: 0; duration: Theme.animated ? Theme.landingTime : 0; easing.type: Easing.InQuad }
    }
}
