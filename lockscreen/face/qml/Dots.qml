import QtQuick
import LumoraFace

// One for each stage; that of the stage in view is longer.
Item {
    id: dots
    required property FaceModel face
    readonly property var part: face.look.pageDots

    x: part.frame.x
    y: part.frame.y
    width: part.frame.width
    height: part.frame.height
    visible: part.visible
    Row {
        spacing: 7 * dots.face.unit
        Repeater {
            model: dots.face.look.stages.length
            Rectangle {
                id: dot
                required property int index
                readonly property bool here: index === dots.face.stage
                width: (here ? 16 : 6) * dots.face.unit
                height: 6 * dots.face.unit
                radius: height / 2
                color: dots.part.color
                opacity: here ? 0.9 : 0.45
            }
        }
    }
    Action {
        width: dots.width
        height: dots.height
        face: dots.face
        visible: dots.face.stage + 1 < dots.face.look.stages.length || dots.face.page + 1 < dots.face.look.pages
        gesture: "swipe left"
        name: "Next"
    }
    Action {
        face: dots.face
        width: dots.width
        height: dots.height
        visible: dots.face.stage > 0
        gesture: "swipe right"
        name: "Previous"
    }
}
