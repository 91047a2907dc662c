import QtQuick
import LumoraFace

// A frame around what has just been edited; it fades.
Rectangle {
    id: halo
    required property FaceModel face
    required property bool animated

    opacity: 0
    visible: opacity > 0
    color: "transparent"
    radius: 14
    border.width: 2
    border.color: "#ffd27a"
    SequentialAnimation {
        id: fading
        PropertyAction { target: halo; property: "opacity"; value: 1 }
        PauseAnimation { duration: halo.animated ? 200 : 800 }
        NumberAnimation { target: halo; property: "opacity"; to: 0; duration: halo.animated ? 600 : 0 }
    }
    Connections {
        target: halo.face
        function onEdited(frame: rect) {
            const margin = 4;
            const left = Math.max(1, frame.x - margin);
            const top = Math.max(1, frame.y - margin);
            halo.x = left;
            halo.y = top;
            halo.width = Math.min(halo.parent.width - 1, frame.x + frame.width + margin) - left;
            halo.height = Math.min(halo.parent.height - 1, frame.y + frame.height + margin) - top;
            fading.restart();
        }
    }
}
