pragma Singleton
import QtQuick

// Colours and measures, once for all.
QtObject {
    property bool dark: false
    property bool animated: true

    readonly property color page: dark ? "#000000" : "#f2f2f7"
    readonly property color cell: dark ? "#1c1c1e" : "#ffffff"
    readonly property color cellDown: dark ? "#3a3a3c" : "#d9d9de"
    readonly property color bar: dark ? "#161618" : "#f9f9fb"
    readonly property color hairline: dark ? "#38383a" : "#d5d5d9"
    readonly property color text: dark ? "#ffffff" : "#000000"
    readonly property color secondary: dark ? "#98989f" : "#6c6c70"
    readonly property color placeholder: dark ? "#7c7c82" : "#9a9aa0"
    readonly property color tertiary: dark ? "#5a5a5e" : "#c4c4c7"
    readonly property color accent: dark ? "#0a84ff" : "#007aff"
    readonly property color warning: dark ? "#ff6961" : "#c4001d"
    readonly property color on: dark ? "#30d158" : "#34c759"
    readonly property color off: dark ? "#39393d" : "#e4e4e7"
    readonly property color knobEdge: dark ? "#00000000" : "#24000000"

    readonly property int inset: 16
    readonly property int rowHeight: 44
    readonly property int rowRadius: 10
    readonly property int iconSize: 29
    function contentInset(hasIcon) { return hasIcon ? 2 * inset + iconSize : inset }
    readonly property int contentWidth: 640
    readonly property int bodySize: 17
    readonly property int footSize: 13
    readonly property int smallestSize: 14 // down to which a title shrinks before it is cut
}
