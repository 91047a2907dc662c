import QtQuick
import Lumora

// How profiles come into the window and leave it: by dialogs, and by files that are dropped on it.
DropArea {
    id: root

    required property var window
    required property var profiles // a settings::Profiles
    property string first // the URL of one to open as soon as that can be, empty for none
    property var dialog: null // while it is open
    property var kept: null // an offer that waits for a sheet to go, with its title

    function show(saves) {
        const component = Qt.createComponent("ProfileDialog.qml");
        if (component.status !== Component.Ready)
            return window.say(qsTr("There is no dialog for files here: install QtQuick.Dialogs, or drop a file on the window"));
        dialog = component.createObject(root, { saves, parentWindow: window });
        if (saves)
            dialog.selectedFile = dialog.currentFolder + "/" + qsTr("My Settings.json");
        dialog.accepted.connect(() => {
            const file = dialog.selectedFile;
            end();
            saves ? profiles.save(file) : profiles.open(file);
        });
        dialog.rejected.connect(end);
        dialog.open();
    }
    function end() {
        dialog?.destroy();
        dialog = null;
        window.focusPage(Qt.OtherFocusReason);
    }
    function present(offer, title) {
        profiles.preview(offer);
        window.offer(offer, title, qsTr("Apply %1"), () => profiles.apply(offer, title), () => profiles.endPreview());
    }

    enabled: !window.covered && !window.shell.waiting
    keys: ["text/uri-list"]
    onDropped: drop => {
        drop.accept(Qt.CopyAction);
        if (drop.urls.length === 1)
            profiles.open(drop.urls[0]);
        else
            window.say(qsTr("One profile at a time, please"));
    }

    Rectangle {
        anchors { fill: parent; margins: 3 }
        visible: root.containsDrag
        color: "transparent"
        radius: Theme.rowRadius
        border { width: 3; color: Theme.accent }
    }
    Connections {
        target: root.profiles
        function onOffered(offer, title) {
            if (root.window.covered)
                root.kept = { offer, title };
            else
                root.present(offer, title);
        }
    }
    // Once the sheet has given the focus back.
    Timer {
        interval: 0
        running: root.kept !== null && !root.window.covered
        onTriggered: {
            const { offer, title } = root.kept;
            root.kept = null;
            root.present(offer, title);
        }
    }
    // Not before the page has taken the focus.
    Timer {
        interval: 0
        running: root.enabled && root.first.length > 0
        onTriggered: {
            root.profiles.open(root.first);
            root.first = "";
        }
    }
}
