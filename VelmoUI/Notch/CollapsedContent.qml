import QtQuick
import Velmo

/// Beside the notch what is going on; below it the message of the moment.
Item {
    id: collapsed

    required property NotchContent content
    readonly property real ear: (width - content.notchWidth) / 2

    Item {
        width: collapsed.ear
        height: collapsed.content.notchHeight
        visible: collapsed.content.hasLive && !collapsed.content.hasFeedback

        Symbol {
            anchors.centerIn: parent
            name: collapsed.content.liveSymbol
            size: 16
        }
    }

    Item {
        x: collapsed.width - width
        width: collapsed.ear
        height: collapsed.content.notchHeight
        visible: collapsed.content.hasLive && !collapsed.content.hasFeedback
        Accessible.role: Accessible.StaticText
        Accessible.name: collapsed.content.liveTitle + " " + collapsed.content.liveValue

        ProgressRing {
            anchors.centerIn: parent
            progress: collapsed.content.liveProgress
            color: Theme.accents[collapsed.content.accent]
        }

        Label {
            anchors.centerIn: parent
            visible: collapsed.content.liveProgress < 0
            text: collapsed.content.liveValue
            font.pixelSize: Theme.captionSize
            font.weight: Font.Medium
        }
    }

    Row {
        y: collapsed.content.notchHeight
        anchors.horizontalCenter: parent.horizontalCenter
        height: collapsed.height - y
        spacing: 2 * Theme.grid
        opacity: collapsed.content.hasFeedback ? 1 : 0
        visible: opacity > 0
        Accessible.role: Accessible.AlertMessage
        Accessible.name: collapsed.content.feedbackTitle

        Behavior on opacity {
            enabled: collapsed.content.animated
            NumberAnimation {
                duration: Theme.fadeIn
            }
        }

        Symbol {
            id: feedbackSymbol
            height: parent.height
            name: collapsed.content.feedbackSymbol
            size: 16
            color: Theme.styles[collapsed.content.feedbackStyle]
        }

        Label {
            id: feedbackTitle
            height: parent.height
            width: Math.min(implicitWidth, collapsed.width - feedbackSymbol.width - 4 * Theme.gap)
            text: collapsed.content.feedbackTitle
            font.weight: Font.Medium
        }

        Label {
            height: parent.height
            width: Math.min(implicitWidth, collapsed.width - feedbackSymbol.width - feedbackTitle.width - 5 * Theme.gap)
            visible: width > 40
            text: collapsed.content.feedbackDetail
            color: Theme.secondaryText
            font.pixelSize: Theme.smallSize
        }
    }
}
