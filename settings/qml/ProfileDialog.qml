import QtQuick.Dialogs

// The desktop's dialog for a profile's file, or the toolkit's where the desktop has none.
FileDialog {
    property bool saves: false

    title: saves ? qsTr("Save Profile") : qsTr("Open Profile")
    fileMode: saves ? FileDialog.SaveFile : FileDialog.OpenFile
    nameFilters: [qsTr("Profiles (*.json)"), qsTr("All files (*)")]
    acceptLabel: saves ? qsTr("Save") : qsTr("Open")
    defaultSuffix: "json"
}
