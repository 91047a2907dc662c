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
            if (top - 44 < contentY)
                contentY = Math.max(0, top - 44);
            else if (top + item.height + 24 > contentY + height)
                contentY = Math.min(lowest, top + item.height + 24 - height);
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
