import QtQuick

// Enter and Return on the button that this stands in, at their release, as the toolkit does it for Space. A key that is
// held then acts once, and has been let go before the button brings up something else, were it another process.
Item {
    id: root

    property bool held: false
    readonly property bool onButton: parent.activeFocus
    signal released

    function press(event) { held = held || !event.isAutoRepeat }

    onOnButtonChanged: held = false

    Keys.onReturnPressed: event => press(event)
    Keys.onEnterPressed: event => press(event)
    Keys.onReleased: event => {
        event.accepted = held && !event.isAutoRepeat && [Qt.Key_Return, Qt.Key_Enter].includes(event.key);
        if (!event.accepted)
            return;
        held = false;
        released();
    }
}
