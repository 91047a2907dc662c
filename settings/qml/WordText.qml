import QtQuick

// A text of as many lines as it needs. A word that is too long for a line makes the text smaller, down to its usual
// size; only a word that is longer still is broken.
Text {
    id: root

    property int largestSize: Theme.bodySize
    property int weight: Font.Normal
    property bool keepsWords: true
    readonly property int leastSize: Math.min(largestSize, Math.max(Math.round(largestSize * 100 / Theme.textSize), Math.ceil(0.6 * largestSize)))
    readonly property bool hasLineBreaks: /[\n\r\u2028\u2029]/.test(text)
    readonly property real room: width - leftPadding - rightPadding
    // The widest is among the longest.
    readonly property real widestWord: {
        if (!keepsWords || leastSize === largestSize)
            return 0;
        const words = text.split(/[\s-]+/).sort((one, other) => other.length - one.length).slice(0, 8);
        return Math.max(...words.map(word => metrics.advanceWidth(word.slice(0, 200))));
    }
    readonly property int wordSize: widestWord > 0 && room > 0 && widestWord > room - 1 ? Math.floor(largestSize * (room - 1) / widestWord) : largestSize

    font { pixelSize: wordSize >= leastSize ? wordSize : largestSize; weight: root.weight }
    textFormat: Text.PlainText
    wrapMode: Text.Wrap

    FontMetrics {
        id: metrics

        font { family: Application.font.family; weight: root.weight; pixelSize: root.largestSize }
    }
}
