import QtQuick
import Velmo.Design

/// The title over a column of cards, in line with what is in them.
Label {
    height: Theme.controlHeight
    leftPadding: Theme.cardPadding
    color: Theme.secondaryText
    font.pixelSize: Theme.captionSize
    font.weight: Font.DemiBold
    Accessible.role: Accessible.Heading
    Accessible.name: text
}
