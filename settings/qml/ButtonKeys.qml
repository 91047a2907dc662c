import QtQuick
import Lumora

// Space, Enter and Return on the button that this stands in. Enter and Return act at their release, as the toolkit does it
// for Space. One that is held acts once, and only on the button that has heard it pressed: what brings up something else,
// were it another process, leaves it nothing of the key.
Item {
    id: root

    property bool held: false
    readonly property bool onButton: parent.activeFocus
    signal released

    function isEnter(event) { return [Qt.Key_Return, Qt.Key_Enter].includes(event.key) }

    onOnButtonChanged: held = false

    Keys.onPressed: event => {
        event.accepted = isEnter(event) || (event.key === Qt.Key_Space && Keyboard.repeats());
        held = held || (isEnter(event) && !Keyboard.repeats());
    }
    Keys.onReleased: event => {
        if (event.key === Qt.Key_Space) {
            event.accepted = event.isAutoRepeat || !parent.pressed;
            return;
        }
        event.accepted = held && !event.isAutoRepeat && isEnter(event);
        if (!event.accepted)
            return;
        held = false;
        released();
    }
}
