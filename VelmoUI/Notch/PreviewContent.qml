import QtQuick
import Velmo

/// A peek: the day, and what is going on.
Item {
    id: preview

    required property NotchContent content

    Item {
        y: preview.content.notchHeight
        x: 2 * Theme.gap
        width: preview.width - 2 * x
        height: preview.height - y - Theme.grid

        Column {
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width - liveValue.width - Theme.gap

            Label {
                width: parent.width
                text: preview.content.previewTitle
                font.pixelSize: Theme.bodySize
                font.weight: Font.Medium
            }
            Label {
                width: parent.width
                text: preview.content.previewDetail
                color: Theme.secondaryText
                font.pixelSize: Theme.smallSize
            }
        }

        Row {
            id: liveValue
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            spacing: 2 * Theme.grid

            ProgressRing {
                anchors.verticalCenter: parent.verticalCenter
                progress: preview.content.liveProgress
                color: Theme.accents[preview.content.accent]
            }
            Label {
                text: preview.content.liveValue
                font.pixelSize: Theme.titleSize
                font.weight: Font.Medium
            }
        }
    }
}
