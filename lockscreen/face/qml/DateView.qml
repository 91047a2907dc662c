import QtQuick
import LumoraFace

// The clock and what stands below it.
Item {
    id: date
    required property FaceModel face
    readonly property var clock: face.look.clock
    readonly property var subtitle: face.look.subtitle

    Item {
        x: date.clock.frame.x
        y: date.clock.frame.y
        width: date.clock.frame.width
        height: date.subtitle.frame.y + date.subtitle.frame.height - y
        visible: date.clock.visible || date.subtitle.visible
        Accessible.role: Accessible.StaticText
        Accessible.name: date.clock.visible && date.subtitle.visible ? `${date.clock.text}, ${date.subtitle.text}`
                                                                     : (date.clock.visible ? date.clock : date.subtitle).text
    }
    Shade { part: date.clock }
    Shade { part: date.subtitle }
    ChosenText {
        x: date.clock.frame.x
        y: date.clock.frame.y
        width: date.clock.frame.width
        height: date.clock.frame.height
        visible: date.clock.visible
        opacity: date.clock.opacity
        text: date.clock.text
        font: date.clock.font
        size: date.clock.drawnSize
        color: date.clock.color
        isClock: true
    }
    ChosenText {
        x: date.subtitle.frame.x
        y: date.subtitle.frame.y
        width: date.subtitle.frame.width
        height: date.subtitle.frame.height
        visible: date.subtitle.visible
        opacity: date.subtitle.opacity
        text: date.subtitle.text
        font: date.subtitle.font
        size: date.subtitle.size
        color: date.subtitle.color
        lines: 2
    }
}
