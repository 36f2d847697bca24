import QtQuick
import Velmo

/// Cards in a few rows that go on sideways.
GridView {
    id: grid

    property int rows: 2

    flow: GridView.FlowTopToBottom
    cellHeight: Math.floor((height + Theme.gap) / rows)
    clip: true
    boundsBehavior: Flickable.StopAtBounds

    SidewaysWheel {
        flickable: grid
    }
}
