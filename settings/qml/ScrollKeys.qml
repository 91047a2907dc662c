import QtQuick

// The keys that scroll: by a line, by a page, to the beginning or the end.
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
        event.accepted = targets.has(event.key) && !(event.modifiers & ~Qt.KeypadModifier);
        if (event.accepted)
            asked(targets.get(event.key));
    }
}
