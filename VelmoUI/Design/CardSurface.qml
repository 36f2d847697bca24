import QtQuick
import Velmo.Design

/// The ground of a card.
Rectangle {
    radius: Theme.cardRadius
    color: Theme.surface
    border.width: 1
    border.color: Theme.hairline
}
