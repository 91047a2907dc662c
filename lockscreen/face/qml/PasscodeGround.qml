import QtQuick
import LumoraFace

// The blur and the tint behind the passcode view. They come by their share, which costs less than an opacity would.
Item { // cut off above the keys when that is asked for
    id: ground
    required property FaceModel face
    required property real shown
    readonly property var part: face.look.passcode
    readonly property rect frame: part.blur.frame

    x: frame.x
    y: frame.y
    width: frame.width
    height: frame.height
    clip: frame.y > 0
    visible: part.blur.visible && shown > 0

    PictureItem {
        y: -ground.y
        width: ground.parent.width
        height: ground.parent.height
        backdrop: ground.face.backdrop
        soft: true
        share: ground.part.blur.opacity * ground.shown
        tint: ground.part.tint.color
        tintOpacity: ground.part.tint.opacity * ground.shown
    }
}
