import QtQuick
import Velmo.Design

/// A card of Home that shows its module when it is clicked.
ControlSurface {
    required property string title

    /// The module is to show.
    signal opened

    name: title
    radius: Theme.cardRadius
    idleColor: Theme.surface
    edgeColor: Theme.hairline
    onTriggered: opened()
}
