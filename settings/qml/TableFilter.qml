import QtQuick
import Lumora

// Above a long table: a field that leaves only those rows whose names have all of its words. Out of sight until somebody
// pulls the table down or types; gone once it is empty and left.
Rectangle {
    id: root

    required property TableModel table
    property bool wanted: false
    readonly property bool inUse: head.field.activeFocus
    signal done // with typing

    visible: wanted
    height: visible ? head.height + 16 + (why.visible ? why.height + 4 : 0) : 0
    color: Theme.bar

    function begin(text) {
        if (!table.filterable)
            return;
        wanted = true;
        head.text += text;
        head.field.forceActiveFocus(Qt.ShortcutFocusReason);
        head.field.cursorPosition = head.text.length;
        table.filter = head.text;
    }
    function release() { head.field.focus = false }
    function end() {
        if (!wanted)
            return;
        head.text = table.filter = "";
        wanted = false;
        done();
    }
    function takeKey(event) {
        event.accepted = true;
        if (event.key === Qt.Key_Escape)
            end();
        else if ([Qt.Key_Down, Qt.Key_Return, Qt.Key_Enter].includes(event.key))
            done();
        else
            event.accepted = false;
    }

    SearchField {
        id: head

        anchors { left: parent.left; right: parent.right; top: parent.top; margins: 8 }
        anchors.leftMargin: Math.max(Theme.inset, (parent.width - Theme.contentWidth) / 2 + Theme.inset)
        anchors.rightMargin: anchors.leftMargin
        hint: qsTr("Filter")
        said: why.visible ? why.text : ""
        note: table.filter.trim().length > 0 ? qsTr("%1 of %2").arg(root.table.total).arg(root.table.wholeTotal) : ""
        onEdited: root.table.filter = text

        readonly property TableModel table: root.table

        field.Keys.onShortcutOverride: event => event.accepted = event.key === Qt.Key_Escape || event.text === "/"
        field.Keys.onPressed: event => root.takeKey(event)
        field.Accessible.name: qsTr("Filter")
        field.Accessible.ignored: !root.visible
        field.onActiveFocusChanged: {
            if (!field.activeFocus && text.length === 0)
                root.wanted = false;
        }
    }
    WordText {
        id: why

        visible: root.table.filter.trim().length > 0 && !root.table.selectable
        anchors { left: head.left; right: head.right; top: head.bottom; topMargin: 4 }
        text: qsTr("Clear the filter to reorder")
        color: Theme.secondary
        font.pixelSize: Theme.footSize
        horizontalAlignment: Text.AlignHCenter
        Accessible.ignored: true
    }
    Hairline { anchors.bottom: parent.bottom }
}
