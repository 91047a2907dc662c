import QtQuick
import Lumora

// The window's menu: what can be taken back, what is kept and was kept, and what is shown side by side.
PopupMenu {
    id: root

    required property var window
    required property Panes panes
    property bool atRoot: false // the first page is shown
    property bool hasColumns: false // there is room to choose from
    property bool hasLockScreen: false
    property bool showsLockScreen: false
    property real menuTop: 0
    signal closed

    readonly property Shell shell: window.shell

    function named(verb, title) { return title.length > 0 ? qsTr("%1 “%2”").arg(verb).arg(title) : verb }

    open: true
    name: qsTr("More")
    around: Qt.rect(0, 0, width, menuTop - gap)
    aside: 8
    widest: width - 2 * aside
    lines: Array.from([
        { text: named(qsTr("Undo"), shell.undoTitle), enabled: shell.undoTitle.length > 0, run: () => window.undo() },
        { text: named(qsTr("Redo"), shell.redoTitle), enabled: shell.redoTitle.length > 0, run: () => window.redo() },
        { text: qsTr("Revert Page…"), enabled: shell.hasDifferences(), run: () => window.offerRevert() },
        { text: qsTr("Open Profile…"), enabled: true, hidden: !atRoot || !window.profiles, run: () => window.openProfile() },
        { text: qsTr("Save Profile…"), enabled: true, hidden: !atRoot || !window.profiles, run: () => window.saveProfile() },
        { text: qsTr("History…"), enabled: true, hidden: !atRoot || !(window.history?.isOffered() ?? false), run: () => window.openHistory() },
        { text: qsTr("One Column"), enabled: true, hidden: !hasColumns, checked: panes.columns === 1, run: () => panes.columns = 1 },
        { text: qsTr("Two Columns"), enabled: true, hidden: !hasColumns, checked: panes.columns === 2, run: () => panes.columns = 2 },
        { text: qsTr("Lock Screen"), enabled: true, hidden: !hasLockScreen, checked: showsLockScreen, run: () => window.toggleLockScreen() },
        { text: qsTr("Mark Changes"), enabled: true, checked: window.marksChanges, run: () => window.marksChanges = !window.marksChanges },
    ]).filter(line => !line.hidden)
    onDismissed: closed()
    onLineChosen: line => {
        const chosen = lines[line];
        closed();
        chosen.run();
    }
    Component.onCompleted: {
        takeFocus();
        step(1);
    }
}
