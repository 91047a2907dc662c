import QtQuick
import QtQuick.Templates as T

// The thin bar that shows where a page stands: while it scrolls, and while the mouse is over the page and can grab it. It
// is there at once, and fades when it goes.
T.ScrollIndicator {
    id: root

    readonly property Flickable view: parent as Flickable
    readonly property bool near: hovered || grip.pressed

    padding: 3
    implicitWidth: 16
    minimumSize: 0.05
    hoverEnabled: true
    Accessible.ignored: true

    HoverHandler {
        id: over

        parent: root.view
        acceptedDevices: PointerDevice.Mouse
    }
    contentItem: Item {
        Rectangle {
            id: bar

            anchors { right: parent.right; top: parent.top; bottom: parent.bottom }
            width: root.near ? 7 : 3
            radius: width / 2
            color: Theme.secondary
            opacity: 0
            states: State {
                name: "shown"
                when: (root.active || over.hovered || root.near) && root.size < 1

                PropertyChanges { bar.opacity: 0.6 }
            }
            transitions: Transition {
                from: "shown"

                NumberAnimation { property: "opacity"; duration: Theme.animated ? Theme.fadeTime : 0 }
            }
        }
        MouseArea {
            id: grip

            property real from // in the view
            property real scrolled // when it was pressed

            anchors { fill: parent; rightMargin: -root.rightPadding }
            enabled: root.size < 1
            preventStealing: true

            // A finger scrolls the page itself.
            onPressed: mouse => {
                mouse.accepted = mouse.source === Qt.MouseEventNotSynthesized;
                from = mapToItem(root, 0, mouse.y).y;
                scrolled = root.view.contentY - root.view.originY;
                root.view.cancelFlick();
            }
            onPositionChanged: mouse => {
                const most = root.view.contentHeight - root.view.height;
                const way = root.availableHeight * (1 - root.visualSize);
                const y = scrolled + (mapToItem(root, 0, mouse.y).y - from) * most / way;
                root.view.contentY = root.view.originY + Math.max(0, Math.min(most, y));
            }
        }
    }
}
