import QtQuick
import LumoraFace

// An application of the icon view.
Item {
    id: button
    required property FaceModel face
    required property var part
    required property point origin
    required property int page
    required property int index
    readonly property string path: `icons[${index}]`
    readonly property bool here: page === face.page

    x: page * (parent?.width ?? 0) + origin.x
    y: origin.y
    visible: Math.abs(page - face.page) <= 1

    Shade { part: button.part.label } // below the icon as well, near which it ends
    AppIcon {
        face: button.face
        identifier: button.part.identifier
        round: button.part.picture.round
        opacity: button.part.picture.opacity
        pressed: button.face.pressed === button.path
        x: button.part.picture.frame.x
        y: button.part.picture.frame.y
        width: button.part.picture.frame.width
        height: button.part.picture.frame.height
    }
    Rectangle {
        readonly property var badge: button.part.badge
        x: badge.frame.x
        y: badge.frame.y
        width: badge.frame.width
        height: badge.frame.height
        radius: height / 2
        visible: badge.visible
        color: "#d7383c"

        Text {
            anchors.centerIn: parent
            text: button.part.badge.text
            color: button.part.badge.color
            font.family: FaceFonts.text
            font.weight: Font.DemiBold
            font.pointSize: button.part.badge.size * FaceFonts.pointsPerPoint
            renderType: Text.QtRendering
            Accessible.ignored: true
        }
    }
    Words {
        part: button.part.label
        horizontalAlignment: Text.AlignHCenter
        font.weight: Font.Medium
    }
    FocusFrame {
        frame: button.part.picture.frame
        radius: button.part.picture.round ? width / 2 : 16 * button.face.unit
        visible: button.here && button.face.focused === button.index
    }
    Action {
        face: button.face
        keyed: button.here && button.face.focused === button.index
        visible: button.here
        x: button.part.frame.x
        y: button.part.frame.y
        width: button.part.frame.width
        height: button.part.frame.height
        gesture: "tap " + button.path
        name: button.part.label.text + (button.part.badge.visible ? `, ${button.part.badge.text} new` : "")
        description: button.face.edition > 0 ? button.face.describe(button.part.identifier) : ""
    }
    Action { // not in the other one, of which the toolkit tells as of a whole
        face: button.face
        z: -1
        visible: button.here && button.face.edition > 0 && button.face.hasHold(button.part.identifier)
        x: button.part.frame.x
        y: button.part.frame.y
        width: button.part.frame.width
        height: button.part.frame.height
        gesture: "hold " + button.path
        name: `Hold ${button.part.label.text}`
    }
}
