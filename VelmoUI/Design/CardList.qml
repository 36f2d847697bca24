import QtQuick
import Velmo

/// Cards side by side; the wheel scrolls sideways.
ListView {
    id: list

    orientation: ListView.Horizontal
    spacing: Theme.gap
    clip: true
    boundsBehavior: Flickable.StopAtBounds

    SidewaysWheel {
        flickable: list
    }
}
