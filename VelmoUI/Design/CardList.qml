import QtQuick
import Velmo

/// Cards side by side; the wheel scrolls sideways.
ListView {
    id: list

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
