import QtQuick
import LumoraFace

// What darkens the screen before it sleeps. It is shown at a quick pace after the time until then was edited.
Rectangle {
    id: veil
    required property FaceModel face
    required property bool animated
    readonly property var part: face.look.sleepVeil
    readonly property real dark: part.visible ? part.opacity : 0 // what has gone keeps its looks
    property real played: 0

    color: "black"
    opacity: Math.max(dark, played)
    visible: opacity > 0
    Behavior on opacity {
        enabled: veil.animated && !play.running
        NumberAnimation { duration: 200 }
    }
    SequentialAnimation {
        id: play
        PropertyAction { target: veil; property: "played"; value: 0.4 }
        PauseAnimation { duration: 500 }
        PropertyAction { target: veil; property: "played"; value: 1 }
        PauseAnimation { duration: 500 }
        PropertyAction { target: veil; property: "played"; value: 0 }
    }
    Action {
        anchors.fill: parent
        visible: veil.dark === 1
        face: veil.face
        gesture: "tap"
        name: "Wake"
    }
    Connections {
        target: veil.face
        enabled: veil.animated
        function onSleepEdited() { play.restart() }
    }
}
