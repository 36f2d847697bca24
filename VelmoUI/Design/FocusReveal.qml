import QtQuick
import Velmo.Design

/// Scrolls what the keyboard reaches into view, whatever list or page it is in. One a window.
Item {
    id: reveal

    readonly property Item focused: Window.activeFocusItem

    component Glide: NumberAnimation {
        duration: Theme.glide
        easing.type: Easing.OutCubic
    }
    readonly property Glide across: Glide {
        property: "contentX"
    }
    readonly property Glide along: Glide {
        property: "contentY"
    }

    // A list that makes it its current item has to know that first.
    onFocusedChanged: if (FocusCue.byKeys)
        Qt.callLater(show) // qmllint disable

    function show() {
        for (let inner = focused; inner; inner = inner.parent) {
            const flickable = inner.parent as Flickable;
            if (flickable && flickable.contentItem === inner)
                bring(flickable);
        }
    }

    function bring(flickable: Flickable) {
        const item = largest(flickable);
        const place = item.mapToItem(flickable.contentItem, 0, 0, item.width, item.height);
        glide(across, flickable, nearest(flickable.contentX, flickable.width, place.x, place.width));
        glide(along, flickable, nearest(flickable.contentY, flickable.height, place.y, place.height));
    }

    /// What there is around the control, a card say, if that can be seen at once.
    function largest(flickable: Flickable): Item {
        let found = focused;
        for (let item = focused; item !== flickable.contentItem; item = item.parent) {
            if (item.width <= flickable.width && item.height <= flickable.height)
                found = item;
        }
        return found;
    }

    /// Where to scroll to from there. What is larger than the view, as a long text, scrolls itself.
    function nearest(from: real, room: real, start: real, length: real): real {
        return length > room ? from : Math.max(start + length - room, Math.min(start, from));
    }

    function glide(animation: NumberAnimation, flickable: Flickable, to: real) {
        if (to === flickable[animation.property])
            return;
        animation.stop();
        animation.target = flickable;
        animation.to = to;
        animation.start();
    }
}
