import QtQuick
import LumoraFace

// The passcode view, upon its ground.
Item {
    id: view
    required property FaceModel face
    required property bool animated
    readonly property var part: face.look.passcode
    readonly property real unit: face.unit
    property real shown: part.visible ? 1 : 0

    opacity: shown
    visible: shown > 0
    Behavior on shown {
        enabled: view.animated
        NumberAnimation { duration: 180 }
    }
    Accessible.role: Accessible.Grouping
    Accessible.name: "Passcode"
    Placed {
        part: view.part.cutoff
        Rectangle {
            anchors.fill: parent
            color: "white"
            opacity: 0.31
        }
    }
    Item {
        id: head
        width: parent.width
        height: parent.height
        Words { part: view.part.title }
        Repeater {
            model: view.face.dots
            Rectangle {
                required property var part
                x: part.frame.x
                y: part.frame.y
                width: part.frame.width
                height: width
                radius: width / 2
                color: part.filled ? part.color : "transparent"
                border.width: 1.3 * view.unit
                border.color: part.color
            }
        }
        SequentialAnimation {
            id: shake
            loops: 3
            NumberAnimation { target: head; property: "x"; to: 9 * view.unit; duration: 35 }
            NumberAnimation { target: head; property: "x"; to: -9 * view.unit; duration: 70 }
            NumberAnimation { target: head; property: "x"; to: 0; duration: 35 }
        }
        Connections {
            target: view.face
            enabled: view.animated
            function onWronglyTyped() { shake.restart() }
        }
    }
    Repeater {
        model: view.face.keys
        KeyButton {
            face: view.face
        }
    }
    Repeater {
        model: ["emergency", "cancel"]
        Item {
            id: button
            required property string modelData
            readonly property var part: view.part[modelData]
            anchors.fill: parent
            Words {
                part: button.part
                opacity: view.face.pressed === "passcode." + button.modelData ? 0.5 : 1
            }
            Action {
                face: view.face
                visible: button.part.visible
                x: button.part.frame.x
                y: button.part.frame.y
                width: button.part.frame.width
                height: button.part.frame.height
                gesture: "tap passcode." + button.modelData
                name: button.part.text
            }
        }
    }
}
