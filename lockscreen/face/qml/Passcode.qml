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
    Item { // screen readers tell of it when its name changes: how many digits there are, and never which
        id: told
        property bool wrong: false // until something else is typed

        width: view.width
        height: 1
        onVisibleChanged: if (!visible) wrong = false
        Accessible.role: Accessible.AlertMessage
        Accessible.name: view.face.typed > 0 ? `${view.face.typed} of ${dots.count} digits typed`
                                             : (wrong ? "Wrong passcode. " : "") + view.part.title.text
        Connections {
            target: view.face
            function onWronglyTyped() { told.wrong = true }
            function onTypedChanged() { if (view.face.typed > 0) told.wrong = false }
        }
    }
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
        Shade { part: view.part.title }
        Words { part: view.part.title }
        Repeater {
            id: dots
            model: view.face.dots
            Item {
                id: dot
                required property var part
                Shade { part: dot.part }
                Rectangle {
                    x: dot.part.frame.x
                    y: dot.part.frame.y
                    width: dot.part.frame.width
                    height: width
                    radius: width / 2
                    color: dot.part.filled ? dot.part.color : "transparent"
                    border.width: 1.3 * view.unit
                    border.color: dot.part.color
                }
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
            Shade { part: button.part }
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
