import QtQuick

// What keys do wherever the focus is. One that is held does it once; undoing alone goes on, change by change.
Item {
    id: root

    required property var window
    required property bool onLockScreen // which has a use of its own for Escape
    required property bool onSearch

    KeyOnce {
        sequences: [StandardKey.Back]
        enabled: !root.window.covered
        onPressed: root.window.goBack()
    }
    KeyOnce {
        sequence: "Escape"
        enabled: !root.window.covered && !root.window.searching && !root.onLockScreen
        onPressed: root.window.goBack()
    }
    KeyOnce {
        sequences: [StandardKey.Refresh]
        enabled: !root.window.covered && !root.onSearch
        onPressed: root.window.reload()
    }
    KeyOnce {
        sequence: "Ctrl+L"
        enabled: root.window.lockScreen !== null
        onPressed: root.window.toggleLockScreen()
    }
    KeyOnce {
        sequences: ["Ctrl+W", "Ctrl+Q"] // some desktops have no standard key for the latter
        onPressed: root.window.close()
    }
    Shortcut {
        sequences: [StandardKey.Undo]
        enabled: !root.window.covered && !root.window.searching
        onActivated: root.window.undo()
    }
    Shortcut {
        sequences: [StandardKey.Redo, "Ctrl+Y"]
        enabled: !root.window.covered && !root.window.searching
        onActivated: root.window.redo()
    }
}
