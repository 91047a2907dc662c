import QtQuick
import Lumora

// A page of rows: a column of groups that scrolls and keeps what has the focus in view.
Scroller {
    id: root

    required property PageModel page

    readonly property Item focusItem: Window.activeFocusItem

    contentHeight: groups.y + groups.height + Theme.endGap
    onFocusItemChanged: keepInView(focusItem)
    onHeightChanged: keepInView(focusItem)

    function keepInView(item) {
        for (let ancestor = item; ancestor; ancestor = ancestor.parent) {
            if (ancestor !== groups)
                continue;
            const top = item.mapToItem(groups, 0, 0).y + groups.y;
            const spare = Math.max(0, height - item.height); // for a part of what is around it
            const above = Math.min(44, spare);
            const bottom = top + item.height + Math.min(Theme.groupGap, spare);
            if (top - above < contentY)
                scrollTo(top - above);
            else if (bottom > contentY + height)
                scrollTo(bottom - height);
            return;
        }
    }

    Column {
        id: groups

        x: (root.width - width) / 2
        y: 20
        width: Theme.columnWidthIn(root.width)
        spacing: Theme.groupGap

        Repeater {
            model: root.page.groups

            Group {
                required property GroupModel modelData

                width: groups.width
                group: modelData
            }
        }
    }
}
