import QtQuick
import Velmo.Design
import Velmo.Notch

/// All that one panel draws, in a window as large as the largest shape.
NotchContainerView {
    id: view

    required property NotchContent content
    readonly property int presentation: content.presentation
    readonly property bool isOpen: presentation !== NotchContent.Collapsed && presentation !== NotchContent.Preview

    Accessible.role: Accessible.Pane
    Accessible.name: "Orvane"

    Binding {
        target: Theme
        property: "accentName"
        value: view.content.accent
    }
    Binding {
        target: Theme
        property: "animated"
        value: view.content.animated
    }
    Binding {
        target: Theme
        property: "reducedMotion"
        value: view.content.reducedMotion
    }
    Binding {
        target: Theme
        property: "pace"
        value: view.content.pace
    }

    Binding {
        target: Theme
        property: "isLarge"
        value: view.content.isLarge
    }

    Binding {
        target: DataState
        property: "isLoading"
        value: view.content.isLoading
    }

    Connections {
        target: view.content
        function onCalled() {
            FocusCue.byKeys = true;
        }
    }

    FocusReveal {}

    Shadow {
        anchors.fill: parent
        body: shape.body
        cornerRadius: Theme.shadowCorner
        blur: Theme.shadowBlur
        drop: Theme.shadowDrop
        opacity: view.isOpen ? Theme.shadowOpacity : 0
        visible: opacity > 0

        Behavior on opacity {
            NumberAnimation {
                duration: Theme.fadeIn
            }
        }
    }

    NotchShape {
        id: shape
        anchors.fill: parent
        spec: view.content.shape
        centerX: view.content.notchCenterX
        color: Theme.shape
    }

    // The content shows as far as the shape has come, in whole points. What a rounded corner takes of
    // a square is less than a third of its radius; what stands at the margin is rounded itself.
    Item {
        id: clip

        readonly property real middle: view.content.notchCenterX + view.content.shape.horizontalOffset - x
        readonly property real inset: Math.min(Theme.margin - 1, view.content.shape.bottomRadius * 0.3)

        x: Math.ceil(shape.body.x + inset)
        width: Math.floor(shape.body.right - inset) - x
        height: Math.floor(shape.body.height - inset)
        clip: true

        ContentLayer {
            shown: view.presentation === NotchContent.Collapsed && view.content.hasLive && !view.content.hasFeedback && !view.content.mailBanner.isShown
            middle: clip.middle
            extent: view.content.liveSize
            content: view.content
            file: "LiveContent.qml"
        }

        ContentLayer {
            shown: view.presentation === NotchContent.Collapsed && view.content.hasFeedback && !view.content.mailBanner.isShown
            middle: clip.middle
            extent: view.content.feedbackSize
            content: view.content
            file: "FeedbackContent.qml"
        }

        ContentLayer {
            shown: view.presentation === NotchContent.Collapsed && view.content.mailBanner.isShown
            middle: clip.middle
            extent: view.content.bannerSize
            content: view.content
            file: "MailBannerContent.qml"
        }

        ContentLayer {
            shown: view.presentation === NotchContent.Preview
            middle: clip.middle
            extent: view.content.previewSize
            content: view.content
            file: "PreviewContent.qml"
        }

        ContentLayer {
            shown: view.presentation === NotchContent.Expanded
            middle: clip.middle
            extent: view.content.expandedSize
            content: view.content
            file: "ExpandedContent.qml"
        }

        ContentLayer {
            shown: view.presentation === NotchContent.DropTarget
            middle: clip.middle
            extent: view.content.dropTargetSize
            content: view.content
            file: "DropTargetContent.qml"
        }

        ContentLayer {
            shown: view.presentation === NotchContent.DropResult
            middle: clip.middle
            extent: view.content.dropResultSize
            content: view.content
            file: "DropResultContent.qml"
        }
    }

    DropletView {
        content: view.content
    }
}
