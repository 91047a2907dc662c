import QtQuick
import LumoraFace

// What assistive tools find of a gesture, and do it by. The keyboard is at one of them, or at the screen as a whole.
Item {
    id: action
    required property FaceModel face
    required property string gesture
    required property string name
    property string description: ""

    Accessible.role: Accessible.Button
    Accessible.name: name
    Accessible.description: description
    Accessible.focusable: true
    Accessible.onPressAction: face.act(gesture)
}
