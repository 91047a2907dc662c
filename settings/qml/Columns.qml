import QtQuick
import Lumora

// What two columns have beside the pages: the bar of the second one and the divider; and the window's menu, at the end of
// the last bar.
Item {
    id: root

    required property var window
    required property Panes panes // null for none
    required property PageStack stack
    required property var lockScreen
    property real barHeight: 0
    property string title
    readonly property bool offered: panes !== null && panes.offered
    readonly property real trailing: offered ? Theme.buttonHeight + 8 : 0

    // The search stands over it.
    readonly property bool usable: offered && enabled && !window.searching

    function openMenu() { if (usable) menu.active = true }
    onUsableChanged: if (!usable) menu.active = false

    Loader {
        active: root.stack.two
        x: root.stack.mainX
        width: root.stack.mainWidth
        height: root.barHeight
        sourceComponent: NavigationBar {
            title: root.title
            trailing: root.trailing
        }
    }
    Loader {
        id: button

        active: root.offered
        anchors { right: parent.right; rightMargin: 4; top: parent.top; topMargin: (root.barHeight - Theme.buttonHeight) / 2 }
        sourceComponent: MoreButton {
            enabled: root.usable
            onClicked: root.openMenu()
        }
    }
    Loader {
        active: root.stack.two
        x: (Theme.mirrored ? root.stack.mainWidth : root.stack.listWidth) - Math.floor(width / 2)
        height: parent.height
        sourceComponent: PaneDivider {
            panes: root.panes
            position: root.stack.listWidth
        }
    }
    Shortcut {
        sequence: "F10"
        enabled: root.usable && !menu.active
        onActivated: root.openMenu()
    }
    Loader {
        id: menu

        active: false
        anchors.fill: parent
        sourceComponent: MoreMenu {
            window: root.window
            panes: root.panes
            atRoot: (root.stack.two ? root.stack.listIndex : root.stack.last) === 0
            hasColumns: root.panes.hasRoomIn(root.stack.width, root.window.height)
            hasLockScreen: root.window.lockScreen !== null
            showsLockScreen: root.lockScreen.visible || root.lockScreen.own !== null
            menuTop: root.barHeight + 4
            onClosed: {
                menu.active = false;
                root.window.focusPage(Qt.PopupFocusReason);
            }
        }
    }
}
