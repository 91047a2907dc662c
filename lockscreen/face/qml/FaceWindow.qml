import QtQuick
import LumoraFace

// A window with nothing but the preview.
Window {
    id: window
    required property FaceModel face
    property bool landscape: false
    property alias dark: pane.dark
    property bool animated: true

    visible: true
    title: "Lock Screen – Preview"
    minimumWidth: 200
    minimumHeight: 200
    color: pane.ground

    FacePane {
        id: pane
        anchors.fill: parent
        face: window.face
        animated: window.animated
        landscape: window.landscape
        focus: true
    }
    Shortcut {
        sequences: ["Ctrl+W", "Ctrl+Q"] // some desktops have no standard key for the latter
        onActivated: window.close()
    }
}
