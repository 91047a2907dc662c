import QtQuick
import QtQuick.Window
import QtQuick.Templates as T
import Lumora

// A page of rows: a column of groups that scrolls and keeps what has the focus in view.
Flickable {
    id: root

    required property PageModel page

    contentWidth: width
    contentHeight: groups.y + groups.height + 32
    pixelAligned: true
    boundsBehavior: Flickable.DragAndOvershootBounds
    clip: true

    function keepInView(item) {
        for (let ancestor = item; ancestor; ancestor = ancestor.parent) {
            if (ancestor !== groups)
                continue;
            const top = item.mapToItem(groups, 0, 0).y + groups.y;
            const lowest = Math.max(0, contentHeight - height);
            const spare = Math.max(0, height - item.height); // for a part of what is around it
            const above = Math.min(44, spare);
            const bottom = top + item.height + Math.min(24, spare);
            if (top - above < contentY)
                contentY = Math.max(0, top - above);
            else if (bottom > contentY + height)
                contentY = Math.min(lowest, bottom - height);
            return;
        }
    }

    readonly property Item focusItem: Window.activeFocusItem
    onFocusItemChanged: keepInView(focusItem)
    onHeightChanged: keepInView(focusItem)

    Column {
        id: groups

        x: (root.width - width) / 2
        y: 20
        width: Math.min(root.width, Theme.contentWidth) - 2 * Theme.inset
        spacing: 24

        Repeater {
            model: root.page.groups

            Group {
                required property GroupModel modelData

                width: groups.width
                group: modelData
            }
        }
    }

    T.ScrollIndicator.vertical: PageScrollIndicator {}
}
