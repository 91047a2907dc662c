import QtQuick
import Lumora

// The edge at which the page on top begins. A finger that comes in from there takes the page along, and the one beneath
// follows as it does when one goes back. Let go of far enough or fast enough, the page goes; else it returns.
EdgeSwipe {
    id: root

    required property var stack  // the PageStack around it
    property bool leaving: false // the page has been let go of and is about to be popped
    property var upper: null     // the slots of the two pages, while they are moved
    property var lower: null     // null for nothing beneath
    readonly property int onwards: Theme.mirrored ? -1 : 1
    readonly property real farEnough: 1 / 3 // of the page
    readonly property int fastEnough: 400   // points a second
    signal back

    mirrored: Theme.mirrored
    width: Theme.swipeEdge

    // Puts the pages back where they belong, at once.
    function forget() {
        leaving = false;
        for (const slot of [upper, lower])
            slot?.rest();
        upper = lower = null;
    }
    // The page has not gone.
    function stay() {
        if (leaving)
            turnBack();
    }
    // Moves them to where the finger is, or lets them glide to the beginning or the end of the way.
    function follow() {
        upper.carry(onwards * distance);
        lower?.carry(-0.3 * onwards * Math.max(0, upper.width - distance));
    }
    function glide(upperTo, lowerTo, part) {
        upper?.glide(upperTo, part);
        lower?.glide(lowerTo, part);
    }
    function turnBack() {
        leaving = false;
        glide(0, -0.3 * onwards * (upper?.width ?? 0), Math.min(1, distance / (upper?.width ?? 1)));
        for (const slot of [upper, lower])
            slot?.letGo();
        upper = lower = null;
    }

    onActiveChanged: {
        if (!active)
            return;
        upper = stack.slots[stack.last];
        lower = stack.two ? null : stack.slots[stack.last - 1];
        follow();
    }
    onDistanceChanged: if (upper && active) follow()
    onCanceled: if (upper) turnBack()
    onReleased: speed => {
        if (!upper)
            return;
        if (speed <= -fastEnough || (speed < fastEnough && distance < farEnough * upper.width))
            return turnBack();
        leaving = true;
        glide(onwards * upper.width, 0, Math.max(0, 1 - distance / upper.width));
        back();
    }
}
