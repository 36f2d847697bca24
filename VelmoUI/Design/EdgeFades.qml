import QtQuick
import Velmo.Design

/// Lets what goes on beyond a list's ends fade into the black instead of being cut.
Item {
    id: fades

    required property Flickable flickable
    /// How far the list goes on beyond the end of the page.
    property int overhang: 0

    anchors.fill: parent

    Rectangle {
        width: Theme.fadeWidth
        height: parent.height
        visible: !fades.flickable.atXBeginning
        gradient: Gradient {
            orientation: Gradient.Horizontal
            GradientStop {
                position: 0
                color: Theme.shape
            }
            GradientStop {
                position: 1
                color: Theme.shapeEdge
            }
        }
    }

    Rectangle {
        anchors.right: parent.right
        width: Theme.fadeWidth + fades.overhang
        height: parent.height
        visible: !fades.flickable.atXEnd
        gradient: Gradient {
            orientation: Gradient.Horizontal
            GradientStop {
                position: 0
                color: Theme.shapeEdge
            }
            GradientStop {
                position: Theme.fadeWidth / (Theme.fadeWidth + fades.overhang)
                color: Theme.shape
            }
        }
    }
}
