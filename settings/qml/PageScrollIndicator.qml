import QtQuick
import QtQuick.Templates as T

// The thin bar that shows where a page stands while it scrolls.
T.ScrollIndicator {
    id: root

    padding: 3
    Accessible.ignored: true
    contentItem: Rectangle {
        implicitWidth: 3
        implicitHeight: 3
        radius: 1.5
        color: Theme.secondary
        opacity: root.active && root.size < 1 ? 0.6 : 0

        Behavior on opacity { enabled: Theme.animated; NumberAnimation { duration: Theme.fadeTime } }
    }
}
