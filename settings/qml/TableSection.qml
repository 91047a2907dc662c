import QtQuick
import Lumora

// A section of a table: its header, those of its rows that are in view, and its footer. Where it has no rows, it says so.
Item {
    id: root

    required property SectionModel modelData
    required property TableModel table
    required property TableScroller scroller
    required property LiftedRow hand
    required property TableCursor cursor
    readonly property SectionModel section: modelData

    width: scroller.width

    GroupHeader {
        x: root.scroller.columnX
        y: root.section.top
        width: root.scroller.columnWidth
        height: text ? Math.ceil(implicitHeight) : topPadding
        text: root.section.header
        onHeightChanged: root.section.headerHeight = height
        Component.onCompleted: root.section.headerHeight = height
        topPadding: Theme.groupGap

        Behavior on y { enabled: root.hand.inHand && Theme.animated; MoveAnimation {} }
    }
    Repeater {
        model: root.section

        TableSectionRow {
            section: root.section
            table: root.table
            scroller: root.scroller
            hand: root.hand
            cursor: root.cursor
            // The gap passes beneath the rows of other sections too.
            onLiftedChanged: root.z = lifted ? -1 : 0
        }
    }
    // What is seen where it has no rows.
    Loader {
        active: root.section.empty && !root.table.selectable && root.table.filter.trim().length === 0
        x: root.scroller.columnX
        y: root.section.footerTop - height
        width: root.scroller.columnWidth
        height: root.section.rowHeight
        sourceComponent: DashedBox {
            color: Theme.tertiary
            radius: Theme.rowRadius

            Text {
                anchors { fill: parent; leftMargin: Theme.inset; rightMargin: Theme.inset }
                text: root.table.total > 0 ? qsTr("Nothing here. Drag a row here.") : qsTr("Nothing here.")
                color: Theme.secondary
                font.pixelSize: Math.max(1, Math.min(Theme.detailSize, Theme.bodySizeWithin(root.section.rowHeight)))
                fontSizeMode: Text.Fit
                minimumPixelSize: 1
                horizontalAlignment: Text.AlignHCenter
                verticalAlignment: Text.AlignVCenter
            }
        }
    }
    GroupFooter {
        x: root.scroller.columnX
        y: root.section.footerTop
        width: root.scroller.columnWidth
        height: text ? Math.ceil(implicitHeight) : 0
        text: root.section.footer
        onHeightChanged: root.section.footerHeight = height
        Component.onCompleted: root.section.footerHeight = height

        Behavior on y { enabled: root.hand.inHand && Theme.animated; MoveAnimation {} }
    }
}
