import QtQuick

// Where the keys lead that scroll: by a line, by a page, to the beginning or the end.
QtObject {
    id: root

    required property Flickable view
    property real line // that one key scrolls

    readonly property list<int> known: [Qt.Key_Up, Qt.Key_Down, Qt.Key_PageUp, Qt.Key_PageDown, Qt.Key_Home, Qt.Key_End]

    function knows(event) {
        return !(event.modifiers & ~Qt.KeypadModifier) && known.includes(event.key);
    }
    // In the coordinates of what scrolls; may lie beyond its ends.
    function target(event) {
        const aPage = Math.max(line, view.height - line);
        return new Map([
            [Qt.Key_Up, view.contentY - line], [Qt.Key_Down, view.contentY + line],
            [Qt.Key_PageUp, view.contentY - aPage], [Qt.Key_PageDown, view.contentY + aPage],
            [Qt.Key_Home, view.originY], [Qt.Key_End, view.originY + view.contentHeight],
        ]).get(event.key);
    }
}
