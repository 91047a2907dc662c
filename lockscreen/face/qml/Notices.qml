import QtQuick
import LumoraFace

Repeater {
    id: notices
    required property FaceModel face
    required property real shift
    required property bool animated

    model: face.notices

    Item {
        id: notice
        required property var part
        required property int index
        readonly property string path: `notices.items[${index}]`
        readonly property real pulled: notices.face.pulled === path ? Math.max(0, notices.face.dragged.x) : 0
        readonly property bool leaving: notices.face.leaving === index
        property real at: 0
        onPulledChanged: follow()
        onLeavingChanged: follow()
        function follow() {
            const goal = notices.face.leaving === index ? width : 0;
            sliding.stop();
            if (pulled > 0 || !notices.animated) {
                at = pulled > 0 ? pulled : goal;
            } else {
                sliding.to = goal;
                sliding.start();
            }
        }
        NumberAnimation {
            id: sliding
            target: notice
            property: "at"
            duration: 250
            easing.type: Easing.OutCubic
        }

        width: parent?.width ?? 0
        height: parent?.height ?? 0
        visible: part.visible && notices.face.look.notices.visible
        transform: Translate { x: notice.at }

        Pane {
            face: notices.face
            part: notice.part
            radius: 22 * face.unit
            shift: notices.shift + notice.at
        }
        AppIcon {
            readonly property rect frame: notice.part.frame
            readonly property real unit: notices.face.unit
            face: notices.face
            identifier: notice.part.identifier
            round: notice.part.round
            x: frame.x + 14 * unit
            y: frame.y + (frame.height - height) / 2
            width: 42 * unit
            height: width
        }
        Words {
            part: notice.part.title
            font.weight: Font.DemiBold
        }
        Words { part: notice.part.when }
        Words { part: notice.part.text }
        FocusFrame {
            frame: notice.part.frame
            radius: 22 * notices.face.unit
            visible: notices.face.focused === notice.index
        }
        Action {
            face: notices.face
            keyed: notice.visible && notices.face.focused === notice.index
            x: notice.part.frame.x
            y: notice.part.frame.y
            width: notice.part.frame.width
            height: notice.part.frame.height
            gesture: "swipe " + notice.path
            name: [notice.part.title.text, notice.part.text.text, notice.part.when.text].join(", ")
            description: "opens it"
        }
    }
}
