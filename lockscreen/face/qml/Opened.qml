import QtQuick
import LumoraFace

// An application that was opened from the lock screen, as a picture of one, and how the phone stands then.
Rectangle {
    id: opened
    required property FaceModel face
    required property bool animated
    readonly property var part: face.look.opened
    readonly property real unit: face.unit
    readonly property bool isHome: part.identifier === ""
    // Deep enough for white texts.
    readonly property color shade: Qt.hsva(Math.max(0, icon.shade.hsvHue), Math.min(1, 1.5 * icon.shade.hsvSaturation),
                                           0.62, 1)

    opacity: part.visible ? 1 : 0
    visible: opacity > 0
    Behavior on opacity {
        enabled: opened.animated
        NumberAnimation { duration: 180 }
    }
    color: shade
    gradient: Gradient {
        GradientStop { position: 0; color: opened.shade }
        GradientStop { position: 1; color: Qt.darker(opened.shade, 3.2) }
    }

    PictureItem { // the home screen
        anchors.fill: parent
        visible: opened.isHome
        backdrop: opened.face.backdrop
        soft: true
    }
    AppIcon {
        id: icon
        face: opened.face
        identifier: opened.part.identifier
        visible: !opened.isHome
        width: 120 * opened.unit
        height: width
        x: (parent.width - width) / 2
        y: parent.height * 0.34 - 60 * opened.unit
    }
    Item {
        x: opened.part.title.frame.x
        y: opened.part.title.frame.y
        width: opened.part.title.frame.width
        height: opened.part.how.frame.y + opened.part.how.frame.height - y
        Accessible.role: Accessible.StaticText
        Accessible.name: opened.isHome ? "Home screen" : `${opened.part.title.text}, ${opened.part.how.text}`
    }
    Words {
        part: opened.part.title
        family: FaceFonts.display
        font.weight: Font.DemiBold
        horizontalAlignment: Text.AlignHCenter
    }
    Words {
        id: how
        part: opened.part.how
        font.weight: Font.Medium
        horizontalAlignment: Text.AlignHCenter
    }
    Glyph {
        visible: opened.part.how.visible
        name: opened.part.locked ? "lock" : "unlock"
        color: opened.part.how.color
        width: 17 * opened.unit
        height: width
        x: how.x + (how.width - how.contentWidth) / 2 - width - 10 * opened.unit
        y: how.y + (how.height - height) / 2
    }
    Words {
        part: opened.part.home
        horizontalAlignment: Text.AlignHCenter
    }
    Placed {
        part: opened.part.button
        Glyph {
            anchors.fill: parent
            name: "home"
            color: opened.part.button.color
        }
        Action {
            anchors.fill: parent
            face: opened.face
            gesture: "home"
            name: "Home"
            description: opened.part.home.text
        }
    }
}
