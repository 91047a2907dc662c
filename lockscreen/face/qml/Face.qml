import QtQuick
import LumoraFace

// The lock screen, over the whole item. What is decided about its looks is decided in lookOf(); here it is placed and moved.
Item {
    id: screen
    required property FaceModel face
    property bool animated: true
    readonly property var look: face.look
    readonly property bool onStage: !look.passcode.visible && !look.opened.visible

    clip: true
    focus: true
    Accessible.role: Accessible.Pane
    Accessible.name: "Lock screen"
    onWidthChanged: face.resize(width, height)
    onHeightChanged: face.resize(width, height)
    Keys.onPressed: event => {
        const name = FaceKeys.nameOf(event);
        event.accepted = name !== "";
        if (event.accepted) face.act("key " + name);
    }

    PictureItem {
        anchors.fill: parent
        backdrop: screen.face.backdrop
    }
    MouseArea { // below what assistive tools press
        anchors.fill: parent
        onPressed: mouse => {
            screen.forceActiveFocus(Qt.MouseFocusReason);
            screen.face.press(Qt.point(mouse.x, mouse.y));
        }
        onPositionChanged: mouse => screen.face.move(Qt.point(mouse.x, mouse.y))
        onReleased: screen.face.release()
        onCanceled: screen.face.cancel()
    }

    Item {
        anchors.fill: parent
        visible: screen.onStage || passcode.opacity < 1

        DateView {
            anchors.fill: parent
            face: screen.face
        }
        Stage {
            id: notices
            face: screen.face
            letter: "N"
            animated: screen.animated
            Notices {
                face: screen.face
                shift: notices.x
                animated: screen.animated
            }
        }
        Stage {
            id: apps
            face: screen.face
            letter: "A"
            animated: screen.animated
            Icons {
                anchors.fill: parent
                face: screen.face
                shift: apps.x
                animated: screen.animated
            }
        }
        Stage {
            id: views
            face: screen.face
            letter: "V"
            animated: screen.animated
            AppView {
                anchors.fill: parent
                face: screen.face
                shift: views.x
            }
        }
        SlideHint { face: screen.face }
        Dots { face: screen.face }
        Edges {
            anchors.fill: parent
            face: screen.face
        }
    }
    Passcode {
        id: passcode
        anchors.fill: parent
        face: screen.face
        animated: screen.animated
    }
    StatusBar {
        anchors.fill: parent
        face: screen.face
    }
    Opened {
        anchors.fill: parent
        face: screen.face
        animated: screen.animated
    }
    Veil {
        anchors.fill: parent
        face: screen.face
        animated: screen.animated
    }
    Halo {
        face: screen.face
        animated: screen.animated
    }
}
