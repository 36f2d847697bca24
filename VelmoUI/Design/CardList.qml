import QtQuick
import Velmo.Design

/// Cards side by side; the wheel scrolls sideways.
ListView {
    id: list

    /// Equal parts of the list, as many as stand in it at that width.
    function share(index: int, least: int): int {
        const part = (width + spacing) / count;
        return part < least + spacing ? least : Math.round((index + 1) * part) - Math.round(index * part) - spacing;
    }

    orientation: ListView.Horizontal
    spacing: Theme.gap
    clip: true
    boundsBehavior: Flickable.StopAtBounds
    activeFocusOnTab: count > 0
    highlightMoveDuration: Theme.glide
    highlightMoveVelocity: -1

    SidewaysWheel {
        flickable: list
    }
    EdgeFades {
        parent: list
        flickable: list
    }
}
