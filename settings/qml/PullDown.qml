import QtQuick

// Tells when a finger or a pressed mouse has pulled a view down from its beginning, and let go. Wheels and touchpads
// scroll beyond the beginning without wanting that.
Item {
    id: root

    required property Flickable view
    property bool far: false
    signal pulled

    PointHandler { id: finger }
    Connections {
        target: root.view

        function onDragStarted() { root.far = false }
        function onContentYChanged() {
            if (finger.active)
                root.far = root.view.contentY < -Theme.pullDistance;
        }
        function onDragEnded() {
            if (root.far && root.view.contentY < -Theme.pullDistance)
                root.pulled();
            root.far = false;
        }
    }
}
