import QtQuick
import QtQuick.Templates as T

// What is longer than there is room for: it scrolls by touch, by wheel and, where it is told of them, by keys.
Flickable {
    id: root

    property real line: 3 * Theme.bodySize // that one key scrolls

    contentWidth: width
    pixelAligned: true
    boundsBehavior: Flickable.DragAndOvershootBounds
    clip: true

    function scrollTo(y) {
        cancelFlick();
        contentY = Math.max(0, Math.min(contentHeight - height, y));
    }
    // As little as it takes; what is higher than the room for it is seen from its beginning.
    function show(top, bottom) {
        if (bottom > contentY + height)
            scrollTo(bottom - height);
        if (top < contentY)
            scrollTo(top);
    }
    function takeKey(event) {
        if (!keys.knows(event))
            return;
        scrollTo(keys.target(event));
        event.accepted = true;
    }

    readonly property ScrollKeys keys: ScrollKeys {
        view: root
        line: root.line
    }

    T.ScrollIndicator.vertical: PageScrollIndicator {}
}
