import QtQuick
import LumoraFace

// A place beside others that swipes lead to; it follows a finger that drags it.
Item {
    id: stage
    required property FaceModel face
    required property string letter
    required property bool animated
    readonly property int place: face.look.stages.indexOf(letter)
    readonly property real drag: face.stageDrag
    property real slid: (place - face.stage) * width

    Behavior on slid {
        enabled: stage.animated
        NumberAnimation { duration: 250; easing.type: Easing.OutCubic }
    }
    width: parent.width
    height: parent.height
    x: slid + drag
    visible: place >= 0 && x > -width && x < width
}
