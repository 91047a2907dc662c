import QtQuick
import Lumora

// What two columns have beside the pages: the bar of the second one, the divider, and the menu that chooses the columns.
// The menu is there as soon as the window has room for them.
Item {
    id: root

    required property var window
    required property Panes panes // null for none
    required property PageStack stack
    required property var lockScreen
    property real barHeight: 0
    property string title
    readonly property bool offered: panes !== null && panes.offered && panes.hasRoomIn(stack.width, window.height)
    readonly property real trailing: offered ? Theme.buttonHeight + 8 : 0

    function openMenu() { if (offered && enabled) menu.active = true }

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
        sourceComponent: ViewButton { onClicked: root.openMenu() }
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
        enabled: root.offered && root.enabled && !menu.active
        onActivated: root.openMenu()
    }
    Loader {
        id: menu

        active: false
        anchors.fill: parent
        sourceComponent: ViewMenu {
            panes: root.panes
            hasLockScreen: root.window.lockScreen !== null
            showsLockScreen: root.lockScreen.visible || root.lockScreen.own !== null
            menuTop: root.barHeight + 4
            menuEnd: 8
            onClosed: {
                menu.active = false;
                root.window.focusPage(Qt.PopupFocusReason);
            }
            onLockScreenChosen: root.lockScreen.toggle()
        }
    }
    onOfferedChanged: if (!offered) menu.active = false
}
