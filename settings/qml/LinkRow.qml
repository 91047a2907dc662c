import QtQuick

// Opens a page. An option list shows what is chosen in it, beneath the title when both are too long for one line.
TappableRow {
    id: control

    text: row.title
    Accessible.role: Accessible.Link
    Accessible.description: row.valueTitle + (row.valueTitle && row.accessibleDescription ? ". " : "") + row.accessibleDescription

    contentItem: Item {
        id: content

        readonly property real room: width - chevron.width - Theme.signGap
        readonly property bool stacked: unboundValue.advanceWidth + Theme.textGap > room / 2
                                        && unbound.advanceWidth + Theme.textGap + unboundValue.advanceWidth > room

        // On whole pixels, as with anchors.
        function middle(height) { return Math.ceil(Math.floor(content.height) / 2) - Math.ceil(Math.floor(height) / 2) }

        implicitHeight: stacked ? title.implicitHeight + 2 + value.implicitHeight : Math.max(title.implicitHeight, value.implicitHeight)

        RowTitle {
            id: title

            x: control.mirrored ? content.width - width : 0
            y: content.stacked ? content.middle(content.implicitHeight) : content.middle(height)
            width: content.stacked ? content.room
                : value.text.length === 0 ? content.room - Theme.textGap
                : Math.min(Math.max(Math.ceil(unbound.advanceWidth) + 1, Theme.bodySize), content.room - value.implicitWidth - Theme.textGap)
            text: control.text
        }
        TextMetrics {
            id: unbound

            font { family: title.font.family; pixelSize: Theme.bodySize }
            text: control.text
        }
        TextMetrics {
            id: unboundValue

            font { family: title.font.family; pixelSize: Theme.bodySize }
            text: control.row.valueTitle
        }
        WordText {
            id: value

            readonly property real start: content.stacked ? 0 : title.width + Theme.textGap

            x: control.mirrored ? content.width - start - width : start
            y: content.stacked ? title.y + title.height + 2 : content.middle(height)
            width: content.room - start
            text: control.row.valueTitle
            color: Theme.secondary
            horizontalAlignment: content.stacked ? Text.AlignLeft : Text.AlignRight
            wrapMode: content.stacked ? Text.Wrap : Text.NoWrap
        }
        Chevron {
            id: chevron

            anchors { right: parent.right; verticalCenter: parent.verticalCenter }
        }
    }
}
