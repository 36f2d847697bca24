import QtQuick
import Velmo

/// The title over a column of cards.
Label {
    height: Theme.controlHeight
    leftPadding: Theme.grid
    color: Theme.secondaryText
    font.pixelSize: Theme.captionSize
    font.weight: Font.DemiBold
    Accessible.role: Accessible.Heading
    Accessible.name: text
}
