import QtQuick
import LumoraFace

// An App View: a card with the plug-in's icon and name, and what it draws.
Item {
    id: view
    required property FaceModel face
    required property real shift
    property real grown: 1   // out of the icon that it came from
    property rect origin     // of which this is the frame
    readonly property var part: face.look.appView
    readonly property rect frame: part.frame
    readonly property real unit: face.unit

    opacity: grown
    transform: [
        Scale {
            origin.x: view.frame.x
            origin.y: view.frame.y
            xScale: view.grown + (1 - view.grown) * view.origin.width / Math.max(1, view.frame.width)
            yScale: view.grown + (1 - view.grown) * view.origin.height / Math.max(1, view.frame.height)
        },
        Translate {
            x: (1 - view.grown) * (view.origin.x - view.frame.x)
            y: (1 - view.grown) * (view.origin.y - view.frame.y)
        }
    ]
    Accessible.role: Accessible.Grouping
    Accessible.name: part.title.text
    Accessible.description: part.locked ? "" : card.words

    Pane {
        face: view.face
        part: view.part
        radius: 30 * view.unit
        shift: view.shift
    }
    AppIcon {
        face: view.face
        identifier: view.part.application
        x: view.frame.x + 18 * view.unit
        y: view.frame.y + 16 * view.unit
        width: 30 * view.unit
        height: width
    }
    Words {
        part: view.part.title
        width: part.frame.width - (caption.text === "" ? 0 : caption.width + 12 * view.unit)
        font.weight: Font.DemiBold
    }
    Text {
        id: caption
        x: view.part.title.frame.x + view.part.title.frame.width - width
        y: view.part.title.frame.y
        width: Math.min(implicitWidth, view.part.title.frame.width / 2)
        height: view.part.title.frame.height
        visible: !view.part.locked && text !== ""
        text: card.caption
        color: view.part.title.color
        opacity: 0.8
        font.family: FaceFonts.text
        font.pointSize: 14 * view.unit * FaceFonts.pointsPerPoint
        textFormat: Text.PlainText
        renderType: Text.QtRendering
        elide: Text.ElideRight
        verticalAlignment: Text.AlignVCenter
        Accessible.ignored: true
    }
    Rectangle {
        x: view.frame.x + 18 * view.unit
        y: view.frame.y + 58 * view.unit
        width: view.frame.width - 36 * view.unit
        height: 1
        color: view.part.title.color
        opacity: 0.16
    }
    AppIcon {
        id: picture
        face: view.face
        identifier: view.part.application
        visible: !view.part.locked && !card.draws
        width: Math.min(96 * view.unit, (view.frame.height - 74 * view.unit) / 2)
        height: width
        x: view.frame.x + (view.frame.width - width) / 2
        y: view.frame.y + 58 * view.unit + (view.frame.height - 58 * view.unit - height) / 2
    }
    ViewCard {
        id: card
        face: view.face
        identifier: view.part.identifier
        ink: view.part.title.color
        unit: view.unit
        visible: !view.part.locked
        x: view.frame.x + 18 * view.unit
        y: view.frame.y + 72 * view.unit
        width: view.frame.width - 36 * view.unit
        height: view.frame.height - 88 * view.unit
    }
    Column {
        visible: view.part.locked
        width: view.frame.width
        x: view.frame.x
        y: view.frame.y + 58 * view.unit + (view.frame.height - 58 * view.unit - height) / 2
        spacing: 14 * view.unit
        Glyph {
            anchors.horizontalCenter: parent.horizontalCenter
            name: "lock"
            width: 40 * view.unit
            height: width
            color: view.part.title.color
        }
        Text {
            anchors.horizontalCenter: parent.horizontalCenter
            text: "Needs the passcode"
            color: view.part.title.color
            font.family: FaceFonts.text
            font.pointSize: 15 * view.unit * FaceFonts.pointsPerPoint
            renderType: Text.QtRendering
        }
    }
    Loader { // most never need it
        readonly property bool needed: !view.part.locked && (card.stopped || card.tooMuch)
        anchors.fill: card
        z: 1
        visible: needed
        onNeededChanged: if (needed && status === Loader.Null) setSource("ViewFault.qml", {card: card})
    }
    Repeater {
        model: [{gesture: "tap appView", name: `Open ${view.part.title.text}`}, {gesture: "swipe down", name: "Close"},
                {gesture: "swipe left", name: "Next App View"}, {gesture: "swipe right", name: "Previous App View"}]
        Action {
            required property var modelData
            required property int index
            face: view.face
            z: -index // a finger that asks what is below it is told the first
            x: view.frame.x
            y: view.frame.y
            width: view.frame.width
            height: view.frame.height
            gesture: modelData.gesture
            name: modelData.name
        }
    }
}
