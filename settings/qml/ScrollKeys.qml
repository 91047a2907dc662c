import QtQuick

// The keys that scroll: by a line, by a page, to the beginning or the end. The space bar takes a page too, with Shift
// back.
QtObject {
    required property Flickable view
    property real line // how far one key scrolls
    signal asked(real y) // in the coordinates of what scrolls; may lie beyond its ends

    function take(event) {
        const aPage = Math.max(line, view.height - line);
        const targets = new Map([
            [Qt.Key_Up, view.contentY - line], [Qt.Key_Down, view.contentY + line],
            [Qt.Key_PageUp, view.contentY - aPage], [Qt.Key_PageDown, view.contentY + aPage],
            [Qt.Key_Home, view.originY], [Qt.Key_End, view.originY + view.contentHeight],
        ]);
        const back = event.modifiers & Qt.ShiftModifier;
        const key = event.key !== Qt.Key_Space ? event.key : back ? Qt.Key_PageUp : Qt.Key_PageDown;
        const others = event.modifiers & ~Qt.KeypadModifier & ~(event.key === Qt.Key_Space ? Qt.ShiftModifier : 0);
        event.accepted = targets.has(key) && !others;
        if (event.accepted)
            asked(targets.get(key));
    }
}
