import QtQuick
import Velmo.Design

/// Cards in a few rows that go on sideways. Each cell ends with the gap to the next, so the grid is
/// as much wider and higher than what it shows.
GridView {
    id: grid

    property int spacing: Theme.gap
    property int rows: Theme.isLarge && height >= 3 * Theme.leastRow ? 3 : 2

    flow: GridView.FlowTopToBottom
    cellHeight: Math.floor(height / rows)
    clip: true
    boundsBehavior: Flickable.StopAtBounds
    activeFocusOnTab: count > 0 || activeFocus // Qt refuses to change it under the keyboard
    highlightMoveDuration: Theme.glide

    SidewaysWheel {
        flickable: grid
    }
    EdgeFades {
        parent: grid
        flickable: grid
        overhang: grid.spacing
    }
}
