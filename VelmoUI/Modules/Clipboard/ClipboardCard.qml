import QtQuick
import Velmo.Design
import Velmo.Modules.Clipboard

/// The latest copies, a click from the clipboard.
CardSurface {
    id: clipboard

    required property string title
    required property ClipboardCardModel card

    /// The module is to show.
    signal opened

    Accessible.role: Accessible.Grouping
    Accessible.name: title

    SectionTitle {
        id: heading
        y: Theme.grid
        width: more.x
        text: clipboard.title
    }
    IconButton {
        id: more
        anchors.right: parent.right
        anchors.rightMargin: Theme.iconInset
        y: Theme.grid
        name: "Mostrar o clipboard"
        symbol: "chevron.right"
        onTriggered: clipboard.opened()
    }

    ListView {
        x: Theme.grid
        y: heading.height + Theme.grid
        width: parent.width - 2 * x
        // No row is cut.
        height: Math.floor((parent.height - y - Theme.grid) / Theme.controlHeight) * Theme.controlHeight
        clip: true
        interactive: false
        model: clipboard.card.items
        Accessible.role: Accessible.List
        Accessible.name: clipboard.title

        delegate: ControlSurface {
            id: row

            required property int index
            required property string title
            required property string picture
            required property string swatch
            required property bool isLink
            required property string spoken

            name: spoken
            visible: (index + 1) * height <= ListView.view.height
            width: ListView.view.width
            height: Theme.controlHeight
            onTriggered: clipboard.card.copy(index)

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
            Rectangle {
                x: 2 * Theme.grid
                anchors.verticalCenter: parent.verticalCenter
                width: Theme.symbolSize
                height: Theme.smallSymbolSize
                visible: row.swatch.length > 0
                radius: Theme.grid
                color: visible ? row.swatch : "transparent"
                border.width: 1
                border.color: Theme.hairline
            }
            Symbol {
                x: 2 * Theme.grid
                width: Theme.symbolSize
                height: parent.height
                visible: row.picture.length === 0 && row.swatch.length === 0
                name: row.isLink ? "link" : "text.alignleft"
                size: Theme.smallSymbolSize
                color: Theme.secondaryText
            }
            Label {
                x: 4 * Theme.grid + Theme.symbolSize
                width: parent.width - x - 2 * Theme.grid
                height: parent.height
                text: row.title
                elide: row.picture.length > 0 ? Text.ElideMiddle : Text.ElideRight
                font.pixelSize: Theme.smallSize
                Accessible.ignored: true
            }
        }
    }

    Label {
        anchors.centerIn: parent
        // Narrow enough that the last word doesn't stand alone.
        width: parent.width - 4 * Theme.cardPadding - 2 * Theme.gap
        visible: clipboard.card.isEmpty && !DataState.isLoading
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        text: "O que você copiar aparece aqui"
        color: Theme.secondaryText
        font.pixelSize: Theme.smallSize
    }
}
