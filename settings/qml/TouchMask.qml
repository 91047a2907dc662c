import QtQuick

// Where a finger finds what is smaller than a finger: around it as well.
QtObject {
    required property Item item

    function contains(at: point): bool {
        const across = Math.max(0, (Theme.touchSize - item.width) / 2);
        const down = Math.max(0, (Theme.touchSize - item.height) / 2);
        return at.x >= -across && at.x <= item.width + across && at.y >= -down && at.y <= item.height + down;
    }
}
