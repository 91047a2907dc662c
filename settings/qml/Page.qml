import QtQuick
import Lumora

// One open page: its rows, or the view that it hosts. Opaque, because the page below slides under it.
FocusScope {
    id: root

    required property PageModel page
    signal gone(PageModel page)

    Accessible.role: Accessible.Pane
    Accessible.name: page.title
    Component.onDestruction: gone(page)

    Rectangle {
        anchors.fill: parent
        color: Theme.page
    }
    Loader {
        anchors.fill: parent
        active: !root.page.hostsView
        sourceComponent: RowsPage { page: root.page; focus: true }
    }
    Loader {
        anchors.fill: parent
        active: root.page.hostsView
        sourceComponent: ViewItem { page: root.page }
    }
}
