import QtQuick
import LumoraFace

// Signal, carrier and lock; the battery stands for itself, as it may stay when the rest is hidden.
Item {
    id: bar
    required property FaceModel face
    readonly property var part: face.look.statusBar
    readonly property var battery: face.look.battery
    readonly property real unit: face.unit

    Shade { part: bar.part }
    Shade { part: bar.battery }
    Placed {
        part: bar.part
        Accessible.role: Accessible.StaticText
        Accessible.name: bar.face.locked ? "Nevo, locked" : "Nevo, unlocked"

        Row {
            anchors.verticalCenter: parent.verticalCenter
            x: 24 * bar.unit
            spacing: 8 * bar.unit
            Glyph {
                anchors.verticalCenter: parent.verticalCenter
                name: "signal"
                level: 0.75
                width: 18 * bar.unit
                height: 12 * bar.unit
                color: bar.part.color
            }
            Text {
                anchors.verticalCenter: parent.verticalCenter
                text: "Nevo"
                color: bar.part.color
                font.family: FaceFonts.text
                font.weight: Font.DemiBold
                font.pointSize: 13 * bar.unit * FaceFonts.pointsPerPoint
                renderType: Text.QtRendering
                Accessible.ignored: true
            }
            Glyph {
                anchors.verticalCenter: parent.verticalCenter
                name: "wifi"
                width: 17 * bar.unit
                height: 12 * bar.unit
                color: bar.part.color
            }
        }
        Glyph {
            anchors.centerIn: parent
            name: bar.face.locked ? "lock" : "unlock"
            width: 13 * bar.unit
            height: width
            color: bar.part.color
        }
    }
    Placed {
        part: bar.battery
        Accessible.role: Accessible.StaticText
        Accessible.name: "Battery " + bar.battery.text

        Words {
            part: bar.battery
            x: 0
            y: 0
            font.weight: Font.DemiBold
        }
        Glyph {
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            name: "battery"
            level: parseInt(bar.battery.text) / 100
            width: 27 * bar.unit
            height: 13 * bar.unit
            color: bar.battery.color
        }
    }
}
