import QtQuick
import LumoraFace

// A frosted pane of the look. What it stands in may be dragged along: the pane shows what is behind it then.
Frost {
    id: pane
    required property FaceModel face
    required property var part
    property real shift: 0 // of the stage that it stands on

    x: part.frame.x
    y: part.frame.y
    width: part.frame.width
    height: part.frame.height
    backdrop: face.backdrop
    tint: part.tint
    tintOpacity: part.tintOpacity
    place: Qt.point(part.frame.x + shift, part.frame.y)
}
