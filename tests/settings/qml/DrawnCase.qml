import QtQuick
import QtTest
import Lumora

// What tests of drawn things share: how they find what is drawn, and what assistive tools are told of it.
TestCase {
    required property Loader host // of what is tried

    when: windowShown

    function beginAsUsual() {
        Theme.animated = false;
        Theme.dark = false;
        Theme.textSize = 100;
        Keyboard.repeats(); // it is there before the first key, as in the window
        bench.reset();
    }
    function init() { beginAsUsual() }

    // Everything in an item for which that is true, from the outside to the inside.
    function all(item, matches) {
        let found = [];
        for (const child of Array.from(item?.children ?? []))
            found = found.concat(matches(child) ? [child] : [], all(child, matches));
        return found;
    }
    function find(item, matches) { return all(item, matches)[0] ?? null }

    function colorAt(x, y) { return grabImage(host.item).pixel(x, y).toString() }

    function spoken(matches) { return bench.spoken(host.item).filter(matches) }
    function spokenAs(name) { return spoken(control => control.name === name)[0] }
    function spokenFocus() { return spoken(control => control.focused).map(control => control.name) }
}
