import QtQuick
import Velmo

/// All that one panel draws, in a window as large as the largest shape.
NotchContainerView {
    id: view

    required property NotchContent content
    readonly property ShapeAnimator spec: content.shape
    readonly property bool isOpen: content.presentation !== "collapsed" && content.presentation !== "preview"

    Accessible.role: Accessible.Pane
    Accessible.name: "Orvane"

    Shadow {
        id: shadow
        x: body.x + body.width / 2 - width / 2
        width: view.spec.targetCoreWidth + 4 * Theme.shadowBlur
        height: view.spec.targetHeight + 2 * Theme.shadowBlur
        visible: opacity > 0
        opacity: 0
        cornerRadius: 28
        blur: Theme.shadowBlur
        drop: Theme.shadowDrop

        states: State {
            name: "shown"
            when: view.isOpen
            PropertyChanges {
                shadow.opacity: Theme.shadowOpacity
                shadow.bodySize: Qt.size(view.spec.targetCoreWidth, view.spec.targetHeight)
            }
        }
        transitions: [
            Transition {
                to: "shown"
                enabled: view.content.animated
                SequentialAnimation {
                    PauseAnimation {
                        duration: Theme.contentDelay * view.content.pace
                    }
                    NumberAnimation {
                        property: "opacity"
                        duration: Theme.fadeIn * view.content.pace
                    }
                }
            },
            Transition {
                from: "shown"
                enabled: view.content.animated
                NumberAnimation {
                    property: "opacity"
                    duration: Theme.fadeOut * view.content.pace
                }
            }
        ]
    }

    NotchShape {
        id: body
        spec: view.spec
        x: view.content.notchCenterX + view.spec.horizontalOffset - width / 2
    }

    // The content lies where the shape will be at the end of its way, and shows as far as the shape
    // has come.
    Item {
        id: clip
        x: view.content.notchCenterX + view.spec.horizontalOffset - width / 2
        width: view.spec.coreWidth
        height: view.spec.height
        clip: true

        Item {
            id: stage
            x: (clip.width - width) / 2
            width: view.spec.targetCoreWidth
            height: view.spec.targetHeight

            ContentLayer {
                anchors.fill: parent
                content: view.content
                shown: view.content.presentation === "collapsed"
                sourceComponent: CollapsedContent {
                    content: view.content
                }
            }

            ContentLayer {
                anchors.fill: parent
                content: view.content
                shown: view.content.presentation === "preview"
                sourceComponent: PreviewContent {
                    content: view.content
                }
            }

            ContentLayer {
                anchors.fill: parent
                content: view.content
                shown: view.content.presentation === "expanded"
                sourceComponent: ExpandedContent {
                    content: view.content
                }
            }

            ContentLayer {
                anchors.fill: parent
                content: view.content
                shown: view.content.presentation === "dropTarget"
                sourceComponent: DropTargetContent {
                    content: view.content
                }
            }

            ContentLayer {
                anchors.fill: parent
                content: view.content
                shown: view.content.presentation === "dropResult"
                sourceComponent: DropResultContent {
                    content: view.content
                }
            }
        }
    }

    DropletView {
        content: view.content
    }
}
