import QtQuick
import Velmo

/// What is going on, left and right of the notch.
Item {
    id: live

    required property NotchContent content
    readonly property real ear: (width - content.notchWidth) / 2
    readonly property bool countsTime: content.liveShortTime.length > 0
    readonly property bool hasProgress: !countsTime && content.liveProgress >= 0

    Accessible.role: Accessible.StaticText
    Accessible.name: content.liveSpoken

    Item {
        width: live.ear
        height: parent.height

        Symbol {
            anchors.centerIn: parent
            name: live.content.liveSymbol
            size: Theme.smallSymbolSize
        }
    }

    Item {
        anchors.right: parent.right
        width: live.ear
        height: parent.height

        ProgressRing {
            anchors.centerIn: parent
            width: Theme.smallSymbolSize
            height: Theme.smallSymbolSize
            visible: live.hasProgress
            progress: live.content.liveProgress
            color: Theme.accent
            trackColor: Theme.surfaceSelected
        }

        NumberLabel {
            anchors.centerIn: parent
            visible: live.countsTime
            text: live.content.liveShortTime
            size: Theme.captionSize
        }

        // Neither time nor progress: a quiet sign that it goes on.
        Rectangle {
            anchors.centerIn: parent
            width: Theme.grid + 2
            height: width
            radius: width / 2
            visible: !live.countsTime && !live.hasProgress
            color: Theme.accent
        }
    }
}
