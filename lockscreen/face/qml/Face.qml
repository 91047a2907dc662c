import QtQuick
import LumoraFace

// The lock screen, over the whole item. What is decided about its looks is decided in lookOf(); here it is placed and moved.
FocusScope {
    id: screen
    required property FaceModel face
    property bool animated: true
    readonly property var look: face.look
    property real revealed: 1 // how far an App View has grown out of an icon
    property rect icon        // which has this frame

    clip: true
    focus: true
    activeFocusOnTab: true
    Accessible.role: Accessible.Pane
    Accessible.name: "Lock screen"
    onWidthChanged: face.resize(width, height)
    onHeightChanged: face.resize(width, height)
    Keys.onPressed: event => {
        const name = FaceKeys.nameOf(event);
        event.accepted = name !== "";
        if (event.accepted && (!event.isAutoRepeat || FaceKeys.repeats(name))) face.act("key " + name);
    }
    NumberAnimation {
        id: revealing
        target: screen
        property: "revealed"
        from: 0
        to: 1
        duration: 200
        easing.type: Easing.OutCubic
    }
    Connections {
        target: screen.face
        enabled: screen.animated
        function onRevealed(icon: rect) {
            screen.icon = icon;
            revealing.restart();
        }
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

    PasscodeGround {
        face: screen.face
        shown: passcode.shown
    }
    StatusBar { // what is told comes in the order of reading
        anchors.fill: parent
        visible: veil.opacity < 1
        face: screen.face
    }
    Item {
        anchors.fill: parent
        opacity: 1 - passcode.shown
        visible: passcode.shown < 1 && opened.opacity < 1 && veil.opacity < 1

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
            Action {
                readonly property var part: screen.look.notices
                face: screen.face
                z: -1 // a finger that asks what is below it is told the notices
                visible: screen.face.hidesNotices
                x: part.frame.x
                y: part.frame.y
                width: part.frame.width
                height: part.frame.height
                gesture: "tap"
                name: part.visible ? "Hide Notices" : "Show Notices"
            }
        }
        Stage {
            id: apps
            face: screen.face
            letter: "A"
            animated: screen.animated && screen.revealed === 1
            // Fades where it is while an App View grows.
            x: screen.revealed < 1 ? 0 : at * width
            visible: place >= 0 && (screen.revealed < 1 || Math.abs(at) < 1)
            opacity: screen.revealed < 1 ? 1 - screen.revealed : 1
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
            animated: screen.animated && screen.revealed === 1
            AppView {
                anchors.fill: parent
                face: screen.face
                shift: views.x
                grown: screen.revealed
                origin: screen.icon
            }
        }
        Shade { part: screen.look.slideHint }
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
    Opened {
        id: opened
        anchors.fill: parent
        face: screen.face
        animated: screen.animated
    }
    Veil {
        id: veil
        anchors.fill: parent
        face: screen.face
        animated: screen.animated
    }
    Halo {
        face: screen.face
        animated: screen.animated
    }
}
