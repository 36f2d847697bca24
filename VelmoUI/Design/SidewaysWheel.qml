import QtQuick

/// Lets the wheel move a flickable sideways.
WheelHandler {
    required property Flickable flickable

    acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
    onWheel: event => {
        const end = Math.max(0, flickable.contentWidth - flickable.width);
        const step = event.angleDelta.y + event.angleDelta.x;
        flickable.contentX = Math.max(0, Math.min(end, flickable.contentX - step));
    }
}
