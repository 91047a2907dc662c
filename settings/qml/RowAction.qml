import QtQuick
import Lumora

// A line of the menu of a page's row.
QtObject {
    required property string text
    property var isFor: row => true // whether a row's menu has the line
    signal chosen(RowModel row)
}
