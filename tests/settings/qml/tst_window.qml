import QtQuick
import QtTest
import Lumora

// The parts of the window around a page, in large letters and in little room.
Item {
    id: root

    width: 320
    height: 568

    Loader {
        id: loader

        anchors.fill: parent
        active: false
    }
    Component {
        id: bar

        NavigationBar {
            height: 52
            canGoBack: true
        }
    }
    Component {
        id: waiting

        WaitingScreen {
            headline: "Lumora does not answer"
            explanation: "The tweak was asked for its settings by requestTweakSettings. ".repeat(4)
            lost: false
        }
    }
    Component {
        id: notice

        TweakNotice {
            gone: true
        }
    }
    Component {
        id: words

        WordText {}
    }
    Component {
        id: mark

        CheckMark {}
    }

    DrawnCase {
        name: "Window"
        host: loader

        function show(component, textSize) {
            Theme.textSize = textSize;
            host.sourceComponent = component;
            host.active = true;
            verify(waitForRendering(host.item));
            return host.item;
        }
        function cleanup() { host.active = false }
        function word(item) { return find(item, other => other.text === "Back" && other.clicked === undefined) }

        function test_givesATitleTheRoomOfTheWordBeforeItIsMadeSmaller() {
            const sizes = [100, 200, 300].map(textSize => {
                const shown = show(bar, textSize);
                shown.title = "Apps Per Row In Landscape";
                waitForRendering(shown);
                verify(!word(shown).visible);
                compare(find(shown, item => item.clicked !== undefined).Accessible.name, "Back");
                const size = find(shown, item => item.text === shown.title).fontInfo.pixelSize;
                host.active = false;
                return size;
            });
            verify(sizes[1] >= sizes[0] && sizes[2] >= sizes[0], sizes);
        }
        function test_keepsTheWordBesideATitleThatFits() {
            const shown = show(bar, 200);
            shown.title = "Units";
            verify(word(shown).visible);
            compare(find(shown, item => item.text === "Units").fontInfo.pixelSize, 32);
        }
        function test_bringsTheButtonIntoViewAndScrollsByKeys() {
            const shown = show(waiting, 300);
            const button = find(shown, item => item.text === "Try Again" && item.clicked !== undefined);
            shown.lost = true;
            verify(button.activeFocus);
            const place = () => button.mapToItem(shown, 0, 0).y;
            verify(place() >= 0 && place() + button.height <= shown.height, place());
            keyClick(Qt.Key_Home);
            verify(place() > shown.height);
            keyClick(Qt.Key_PageDown);
            keyClick(Qt.Key_End);
            verify(place() >= 0 && place() + button.height <= shown.height, place());
        }
        function test_saysThatTheTweakIsGoneInItsOwnColours_data() { return [{ tag: "light", dark: false }, { tag: "dark", dark: true }] }
        function test_saysThatTheTweakIsGoneInItsOwnColours(data) {
            Theme.dark = data.dark;
            const text = find(show(notice, 100), item => item.text?.startsWith("Lumora is not running"));
            compare(text.color, Qt.color(data.dark ? "#ffe08a" : "#573f00"));
            Theme.dark = false;
        }
        function test_breaksAWordThatIsTooLongForALine() {
            const shown = show(words, 200);
            shown.text = "Donaudampfschiff".repeat(3);
            compare(shown.fontInfo.pixelSize, 34);
            verify(shown.lineCount > 1);
            verify(shown.contentWidth <= shown.width);
        }
        function test_drawsSignsAsLargeAsTexts() {
            const small = show(mark, 100);
            compare([small.implicitWidth, small.implicitHeight], [16, 14]);
            Theme.textSize = 200;
            compare([small.implicitWidth, small.implicitHeight], [32, 28]);
        }
    }
}
