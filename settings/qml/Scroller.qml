import QtQuick
import QtQuick.Templates as T

// A view of what may be longer than itself: scrolls by touch, by wheel and, where its owner hands them on, by keys.
Flickable {
    id: root

    property real line: 3 * Theme.bodySize // how far one key scrolls

    contentWidth: width
    pixelAligned: true
    boundsBehavior: Flickable.DragAndOvershootBounds
    flickDeceleration: Theme.flickDeceleration
    maximumFlickVelocity: Theme.fastestFlick
    clip: true

    function scrollTo(y) {
        cancelFlick();
        contentY = Math.max(0, Math.min(contentHeight - height, y));
    }
    // Scrolls as little as it takes. What is higher than the view is seen from its beginning.
    function show(top, bottom) {
        if (bottom > contentY + height)
            scrollTo(bottom - height);
        if (top < contentY)
            scrollTo(top);
    }

    readonly property ScrollKeys keys: ScrollKeys {
        view: root
        line: root.line
        onAsked: y => root.scrollTo(y)
    }

    // A finger that stops what is thrown does nothing to what happens to be beneath.
    MouseArea {
        parent: root
        anchors.fill: parent
        z: 1
        visible: root.flicking || pressed
        onPressed: mouse => mouse.accepted = mouse.source !== Qt.MouseEventNotSynthesized
    }

    T.ScrollIndicator.vertical: PageScrollIndicator {}
}
