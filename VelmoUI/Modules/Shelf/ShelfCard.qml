import QtQuick
import Velmo.Design
import Velmo.Modules.Shelf

/// The latest items of the shelf, a click away.
CardSurface {
    id: shelf

    required property string title
    required property ShelfCardModel card

    /// The module is to show.
    signal opened

    Accessible.role: Accessible.Grouping
    Accessible.name: title

    SectionTitle {
        id: heading
        y: Theme.grid
        width: more.x
        text: shelf.card.notice.length > 0 ? shelf.card.notice : shelf.title
    }
    IconButton {
        id: more
        anchors.right: parent.right
        anchors.rightMargin: Theme.iconInset
        y: Theme.grid
        name: "Mostrar a prateleira"
        symbol: "chevron.right"
        onTriggered: shelf.opened()
    }

    ListView {
        x: Theme.grid
        y: heading.height + Theme.grid
        width: parent.width - 2 * x
        // No row is cut.
        height: Math.floor((parent.height - y - Theme.grid) / Theme.controlHeight) * Theme.controlHeight
        clip: true
        interactive: false
        model: shelf.card.items
        Accessible.role: Accessible.List
        Accessible.name: shelf.title

        delegate: ControlSurface {
            id: row

            required property int index
            required property string symbol
            required property string title
            required property string picture
            required property string spoken

            name: spoken
            visible: (index + 1) * height <= ListView.view.height
            width: ListView.view.width
            height: Theme.controlHeight
            onTriggered: shelf.card.open(index)

            Image {
                x: 2 * Theme.grid
                anchors.verticalCenter: parent.verticalCenter
                width: Theme.symbolSize
                height: Theme.symbolSize
                fillMode: Image.PreserveAspectFit
                sourceSize.width: Theme.symbolSize * Screen.devicePixelRatio
                sourceSize.height: Theme.symbolSize * Screen.devicePixelRatio
                source: row.picture
            }
            Symbol {
                x: 2 * Theme.grid
                width: Theme.symbolSize
                height: parent.height
                visible: row.picture.length === 0
                name: row.symbol
                size: Theme.smallSymbolSize
                color: Theme.secondaryText
            }
            Label {
                x: 4 * Theme.grid + Theme.symbolSize
                width: parent.width - x - 2 * Theme.grid
                height: parent.height
                elide: Text.ElideMiddle
                text: row.title
                font.pixelSize: Theme.smallSize
                Accessible.ignored: true
            }
        }
    }

    Label {
        anchors.centerIn: parent
        // Narrow enough that the last word doesn't stand alone.
        width: parent.width - 4 * Theme.cardPadding - 2 * Theme.gap
        visible: shelf.card.isEmpty && !DataState.isLoading
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        text: "Arraste até aqui o que quer guardar"
        color: Theme.secondaryText
        font.pixelSize: Theme.smallSize
    }
}
