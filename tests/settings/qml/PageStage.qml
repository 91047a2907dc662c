import QtQuick
import Lumora

// A page of the bench between two other stops of the tab chain.
Item {
    id: root

    property PageModel shownPage: null
    readonly property alias before: before
    readonly property alias host: host
    readonly property alias after: after

    width: 390
    height: 700

    Rectangle {
        id: before

        activeFocusOnTab: true
        width: 1
        height: 1
    }
    Loader {
        id: host

        anchors.fill: parent
        active: root.shownPage !== null
        sourceComponent: Page { page: root.shownPage }
    }
    Rectangle {
        id: after

        activeFocusOnTab: true
        width: 1
        height: 1
    }
}
