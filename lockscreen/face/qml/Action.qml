import QtQuick
import LumoraFace

// What assistive tools find of a gesture, and do it by. The keyboard is where the face has it, or at the screen as a
// whole; tools may take it elsewhere.
Item {
    id: action
    required property FaceModel face
    required property string gesture
    required property string name
    property string description: ""
    property bool keyed: false // the face has the keyboard here

    function press(event) {
        event.accepted = !keyed;
        if (!keyed) face.act(gesture);
    }

    focus: keyed
    Keys.onReturnPressed: event => press(event)
    Keys.onEnterPressed: event => press(event)
    Accessible.role: Accessible.Button
    Accessible.name: name
    Accessible.description: description
    Accessible.focusable: true
    Accessible.onPressAction: face.act(gesture)
}
