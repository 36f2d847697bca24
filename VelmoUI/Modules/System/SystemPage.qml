import QtQuick
import Velmo.Design
import Velmo.Modules.System

/// The machine in one row of tiles, which share the width.
FocusScope {
    id: view

    required property SystemPageModel page

    CardList {
        id: tiles

        /// A column of accessories is half as wide again as a tile.
        readonly property real columnShare: 1.5
        readonly property int accessoryRows: Math.max(1, Math.floor(
            (height - 2 * Theme.cardPadding - Theme.symbolSize) / Theme.controlHeight))
        readonly property int accessoryColumns: Math.ceil(view.page.accessoryCount / accessoryRows)
        readonly property int otherCount: count - (accessoryColumns > 0 ? 1 : 0)
        readonly property real tileWidth: Math.max(Theme.leastTileWidth, Math.floor(
            (width - (count - 1) * spacing) / (otherCount + columnShare * accessoryColumns)))
        readonly property real listWidth: accessoryColumns * Math.floor(tileWidth * columnShare)
        /// The last tile takes what whole points leave, up to the page's margin.
        readonly property real lastWidth: Math.max(tileWidth,
            width - (count - 1) * spacing - (otherCount - 1) * tileWidth - listWidth)

        anchors.fill: parent
        focus: true
        model: view.page.tiles
        Accessible.role: Accessible.List
        Accessible.name: "Sistema"

        // The battery comes before the others, a little later.
        onCountChanged: if (!activeFocus)
            currentIndex = 0

        delegate: SystemTile {
            columnWidth: isAccessories ? Math.floor(tiles.tileWidth * tiles.columnShare)
                : index === tiles.count - 1 ? tiles.lastWidth : tiles.tileWidth
            height: ListView.view.height
            accessoryRows: tiles.accessoryRows
            accessories: isAccessories ? view.page.accessories : null
            onTriggered: view.page.checkBluetooth()
        }
    }
}
