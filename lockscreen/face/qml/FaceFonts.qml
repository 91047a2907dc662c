pragma Singleton
import QtQuick

// The screen's own fonts.
QtObject {
    readonly property string text: "Inter"
    readonly property string display: "Inter Display" // for large texts
    readonly property real pointsPerPoint: 0.75       // a font's point is 1/72 of an inch, a screen's 1/96
}
