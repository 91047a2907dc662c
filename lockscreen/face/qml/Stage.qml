import QtQuick
import LumoraFace

// A place beside others that swipes lead to; it follows a finger that drags it, and slides on from there.
Item {
    id: stage
    objectName: letter
    required property FaceModel face
    required property string letter
    required property bool animated
    readonly property int place: face.look.stages.indexOf(letter)
    readonly property real drag: width > 0 ? face.stageDrag / width : 0
    property real at: 0 // in widths of the screen; in view at 0

    function follow(slides) {
        const goal = place - face.stage;
        const dragged = face.stageDrag; // which `drag` is about to learn
        sliding.stop();
        if (dragged !== 0 || !slides) {
            at = goal + (width > 0 ? dragged / width : 0);
        } else {
            sliding.to = goal;
            sliding.start();
        }
    }

    width: parent.width
    height: parent.height
    x: at * width
    visible: place >= 0 && at > -1 && at < 1
    Component.onCompleted: follow(false)
    onPlaceChanged: follow(false)
    onDragChanged: follow(animated)
    Connections {
        target: stage.face
        function onMoved() { stage.follow(stage.animated) }
    }
    NumberAnimation {
        id: sliding
        target: stage
        property: "at"
        duration: 250
        easing.type: Easing.OutCubic
    }
}
