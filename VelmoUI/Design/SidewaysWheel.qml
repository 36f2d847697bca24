import QtQuick
import Velmo.Design

/// Lets the wheel move a flickable sideways.
WheelHandler {
    id: wheel

    required property Flickable flickable
    readonly property real end: Math.max(0, flickable.contentWidth - flickable.width)
    readonly property NumberAnimation glide: NumberAnimation {
        target: wheel.flickable
        property: "contentX"
        duration: Theme.glide
        easing.type: Easing.OutCubic
    }

    acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
    onWheel: event => {
        const from = glide.running ? glide.to : flickable.contentX;
        glide.stop();
        glide.to = Math.max(0, Math.min(end, from - event.angleDelta.y - event.angleDelta.x));
        glide.start();
    }
}
