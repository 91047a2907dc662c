import QtQuick
import LumoraFace

// The icon view: a frosted pane, and on it the icons of a page.
Item {
    id: view
    required property FaceModel face
    required property real shift
    required property bool animated
    readonly property var part: face.look.iconView
    readonly property real unit: face.unit

    Pane {
        face: view.face
        part: view.part
        visible: view.part.blurred
        radius: 30 * view.unit
        shift: view.shift
    }
    Item {
        // A little more than the pane, for badges.
        id: pages
        readonly property real margin: 10 * view.unit
        x: view.part.frame.x
        y: view.part.frame.y - margin
        width: view.part.frame.width
        height: view.part.frame.height + margin
        clip: view.face.look.pages > 1

        Item {
            x: -pages.x - view.face.page * width
            y: -pages.y
            width: view.width
            height: view.height
            Behavior on x {
                enabled: view.animated
                NumberAnimation { duration: 250; easing.type: Easing.OutCubic }
            }

            Repeater {
                model: view.face.icons
                AppButton {
                    face: view.face
                }
            }
        }
    }
    Row {
        id: marks
        anchors.horizontalCenter: parent.horizontalCenter
        y: view.part.frame.y + view.part.frame.height - 14 * view.unit
        spacing: 6 * view.unit
        visible: view.face.look.pages > 1
        Repeater {
            model: view.face.look.pages
            Rectangle {
                required property int index
                width: 5 * view.unit
                height: width
                radius: width / 2
                color: view.face.look.pageDots.color
                opacity: index === view.face.page ? 0.95 : 0.4
            }
        }
    }
}
