import QtQuick
import LumoraFace

// What sticks out of the edges, to be pulled.
Item {
    id: edges
    required property FaceModel face
    readonly property var look: face.look
    readonly property real unit: face.unit

    Placed {
        id: camera
        part: edges.look.camera
        transform: Translate { x: Math.min(0, Math.max(-40 * edges.unit, edges.face.pulled === "camera" ? edges.face.dragged.x : 0)) }

        Glyph {
            anchors.fill: parent
            name: "tab"
            color: Qt.alpha(camera.part.color.hslLightness > 0.5 ? "white" : "#ffffff",
                            camera.part.color.hslLightness > 0.5 ? 0.18 : 0.30)
        }
        Glyph {
            x: 18 * edges.unit
            anchors.verticalCenter: parent.verticalCenter
            width: 22 * edges.unit
            height: width
            name: "camera"
            color: camera.part.color
        }
        Action {
            anchors.fill: parent
            face: edges.face
            gesture: "pull camera"
            name: "Camera"
        }
    }
    Repeater {
        model: [{path: "topGrabber", name: "Pull down from the top"}, {path: "bottomGrabber", name: "Pull up from below"}]
        Placed {
            id: grabber
            required property var modelData
            part: edges.look[modelData.path]
            transform: Translate { y: edges.face.pulled === grabber.modelData.path ? edges.face.dragged.y / 4 : 0 }
            Rectangle {
                anchors.fill: parent
                radius: height / 2
                color: grabber.part.color
                opacity: 0.55
            }
            Action {
                anchors.fill: parent
                face: edges.face
                gesture: "pull " + grabber.modelData.path
                name: grabber.modelData.name
            }
        }
    }
}
