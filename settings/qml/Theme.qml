pragma Singleton
import QtQuick

// The colours, measures and times of the window. Measures are in points, times in milliseconds.
QtObject {
    property bool dark: false
    property bool animated: true
    property int textSize: 100 // in percent of the usual size

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
    readonly property color onColor: "#ffffff" // signs and texts on the accent and other strong colours
    readonly property color shadow: dark ? "#18000000" : "#08000000" // of eight layers
    readonly property color warning: dark ? "#ff6961" : "#c4001d"
    readonly property color notice: dark ? "#4a3800" : "#ffe9b0"
    readonly property color noticeText: dark ? "#ffe08a" : "#573f00"
    readonly property color on: dark ? "#30d158" : "#34c759"
    readonly property color off: dark ? "#39393d" : "#e4e4e7"
    readonly property color knob: "#ffffff"
    readonly property color knobEdge: dark ? "#00000000" : "#24000000"
    readonly property real downOpacity: 0.4 // of a button without a ground

    // What is around the content of a page, and of a row.
    readonly property int contentWidth: 640
    readonly property int inset: 16
    function columnWidthIn(width) { return Math.min(width, contentWidth) - 2 * inset }
    readonly property int groupGap: 24 // between a group and the next one's header
    readonly property int endGap: 32   // beneath the last row of a page
    readonly property int signGap: 8   // between a title and the sign at its end
    readonly property int textGap: 12  // between two texts side by side
    readonly property int lineGap: 8   // between lines on a sheet
    readonly property int focusGap: 8  // around what has the focus, when it is scrolled into view

    readonly property int rowHeight: Math.max(44, Math.ceil(1.25 * bodySize) + 2 * textMargin)
    readonly property int textMargin: 11 // above and below the only text of a row
    readonly property int rowMargin: 5   // at least, above and below what is in a row
    function rowHeightFor(contentHeight) { return Math.max(rowHeight, contentHeight + 2 * rowMargin) }
    readonly property int rowRadius: 10
    readonly property int iconSize: 29
    function contentInset(icon) { return icon === undefined ? inset : 2 * inset + iconSize }
    readonly property int buttonHeight: 40 // in a bar
    readonly property int buttonPadding: 8
    readonly property int buttonRadius: 8
    readonly property int ringInset: 1 // from a control to a focus ring inside it
    readonly property int ringGap: 4   // to one around it

    function scaled(size) { return Math.max(1, Math.round(size * textSize / 100)) }
    readonly property int usualSize: 17 // of the letters of a title
    readonly property int bodySize: scaled(usualSize)
    readonly property int detailSize: scaled(15)
    readonly property int footSize: scaled(13)
    readonly property int smallestSize: scaled(14) // down to which a title shrinks before it takes more lines
    // Where the height is fixed, texts take what there is of it, and shrink as far as they stay readable.
    readonly property int smallestFixedSize: Math.min(smallestSize, 14)
    function bodySizeWithin(height) { return Math.min(bodySize, Math.floor(height * 0.8)) }
    readonly property int barSize: bodySizeWithin(buttonHeight)

    readonly property int slideTime: 300 // of pages and sheets
    readonly property int fadeTime: 250
    readonly property int moveTime: 150 // of rows and knobs, to their places
    readonly property int typingTime: 1000 // between two letters of a name
}
