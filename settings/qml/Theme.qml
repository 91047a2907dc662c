pragma Singleton
import QtQuick

// The colours, measures and times of the window. Measures are in points, times in milliseconds.
QtObject {
    property bool dark: false
    property bool moreContrast: false
    property bool animated: true
    property bool marksChanges: false // at rows whose value differs from when the page was opened
    property int textSize: 100 // in percent of the usual size
    // As in languages that are written from right to left, whose users look for the beginning there.
    readonly property bool mirrored: Application.layoutDirection === Qt.RightToLeft

    // On every ground that it stands on, a text has a contrast of 4.5 : 1 at least, and what tells a control and its state
    // of 3 : 1; of 7 : 1 and 4.5 : 1 with more contrast.
    function shade(inLight, inDark, moreInLight, moreInDark) {
        return dark ? (moreContrast ? moreInDark : inDark) : (moreContrast ? moreInLight : inLight);
    }
    readonly property color page: dark ? "#000000" : "#f2f2f7"
    readonly property color cell: dark ? "#1c1c1e" : "#ffffff"
    readonly property color cellDown: dark ? "#323234" : "#e3e3e8"
    readonly property color cellSelected: dark ? "#152f4d" : "#dfebfa"
    readonly property color bar: dark ? "#161618" : "#f9f9fb"
    readonly property color beside: dark ? "#2a2a2e" : "#e9e9ef" // of what stands beside the pages
    readonly property color hairline: shade("#d5d5d9", "#38383a", "#75757a", "#85858a")
    readonly property color text: dark ? "#ffffff" : "#000000"
    readonly property color secondary: shade("#636367", "#a1a1a8", "#3a3a3e", "#d8d8de")
    readonly property color placeholder: shade("#6a6a6f", "#96969c", "#4a4a4f", "#c0c0c6")
    readonly property color tertiary: shade("#7d7d82", "#85858a", "#4a4a4f", "#c0c0c6")
    readonly property color accent: shade("#0060d0", "#409cff", "#003f99", "#98ccff")
    readonly property color onColor: dark ? "#000000" : "#ffffff" // signs and texts on the accent and other strong colours
    readonly property color shadow: dark ? "#10000000" : "#05000000" // of ten layers
    readonly property color warning: shade("#c4001d", "#ff6961", "#990016", "#ffa49e")
    readonly property color notice: dark ? "#4a3800" : "#ffe9b0"
    readonly property color noticeText: dark ? "#ffe08a" : "#573f00"
    readonly property color on: shade("#248a3d", "#28994a", "#14632a", "#28994a")
    readonly property color off: shade("#8a8a8f", "#7c7c82", "#5c5c61", "#7c7c82")
    readonly property color knob: "#ffffff"
    readonly property color knobEdge: shade("#6c6c70", "#00000000", "#3a3a3e", "#00000000")
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
    readonly property int touchSize: 44 // at least, of what a finger has to find
    readonly property int buttonPadding: 8
    readonly property int buttonRadius: 8
    readonly property int swipeEdge: 20 // of a page, where a finger that goes back begins
    readonly property int flickDeceleration: 2000 // of what scrolls on by itself, in points a second squared
    readonly property int fastestFlick: 6000 // points a second
    readonly property int pullDistance: 60 // by which a page is pulled down to open what is above it
    readonly property int ringInset: 1 // from a control to a focus ring inside it
    readonly property int ringGap: 4   // to one around it

    function scaled(size) { return Math.max(1, Math.round(size * textSize / 100)) }
    readonly property int usualSize: 17 // of the letters of a title
    readonly property int bodySize: scaled(usualSize)
    readonly property int detailSize: scaled(15)
    readonly property int footSize: scaled(13)
    // Where the height is fixed, texts take what there is of it, and shrink as far as they stay readable.
    readonly property int smallestSize: Math.min(scaled(14), 14)
    function bodySizeWithin(height) { return Math.min(bodySize, Math.floor(height * 0.8)) }
    readonly property int barSize: bodySizeWithin(buttonHeight)

    readonly property int slideTime: 300 // of pages and sheets
    readonly property int fadeTime: 250
    readonly property int moveTime: 150 // of rows and knobs, to their places
    readonly property int holdTime: 500 // of a long press
    readonly property int typingTime: 1000 // between two letters of a name
    readonly property int landingTime: 1200 // of what shows where one has come to
    readonly property int noticeTime: 5000 // of what is said in passing
    readonly property int actionTime: 6000 // of what is said with a button
}
