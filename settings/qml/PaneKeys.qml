import QtQuick

// The keys that lead from pane to pane: F6 to the next one, with Shift to the one before, and each one's number.
Item {
    id: root

    required property var panes // items, or null where there is none
    readonly property var there: panes.filter(pane => pane)

    function go(pane) {
        if (pane && pane.takeFocus)
            pane.takeFocus();
        else
            pane?.forceActiveFocus(Qt.ShortcutFocusReason);
    }
    function step(by) {
        const all = there;
        const at = all.findIndex(pane => pane.activeFocus);
        go(at < 0 ? all[0] : all[(at + by + all.length) % all.length]);
    }

    Shortcut {
        sequence: "F6"
        enabled: root.enabled && root.there.length > 1
        onActivated: root.step(1)
    }
    Shortcut {
        sequence: "Shift+F6"
        enabled: root.enabled && root.there.length > 1
        onActivated: root.step(-1)
    }
    component NumberKey: Shortcut {
        required property int number

        sequence: "Ctrl+" + number
        enabled: root.enabled && root.there.length > 1
        onActivated: root.go(root.panes[number - 1])
    }
    NumberKey { number: 1 }
    NumberKey { number: 2 }
    NumberKey { number: 3 }
}
