import QtQuick
import LumoraFace

// What assistive tools find of a gesture, and do it by.
Item {
    id: action
    required property FaceModel face
    required property string gesture
    required property string name
    property string description: ""

    Accessible.role: Accessible.Button
    Accessible.name: name
    Accessible.description: description
    Accessible.onPressAction: face.act(gesture)
}
