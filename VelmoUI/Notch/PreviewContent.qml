import QtQuick
import Velmo

/// A peek: the day, and what is going on.
Item {
    id: preview

    required property NotchContent content

    Item {
        x: 2 * Theme.gap
        y: preview.content.notchHeight
        width: parent.width - 2 * x
        height: parent.height - y - Theme.grid

        Column {
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width - progress.width - (progress.width > 0 ? 2 * Theme.gap : 0)

            Label {
                width: parent.width
                text: preview.content.previewTitle
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
            id: progress
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            spacing: 2 * Theme.grid

            ProgressRing {
                anchors.verticalCenter: parent.verticalCenter
                width: Theme.smallSymbolSize
                height: Theme.smallSymbolSize
                visible: preview.content.liveProgress >= 0
                progress: preview.content.liveProgress
                color: Theme.accent
                trackColor: Theme.surfaceSelected
            }
            NumberLabel {
                anchors.verticalCenter: parent.verticalCenter
                visible: text.length > 0
                text: preview.content.liveValue
                size: Theme.titleSize
            }
        }
    }
}
