import QtQuick
import Velmo.Design
import Velmo.Settings

/// Everything that the user can set, a pane at a time.
Rectangle {
    id: window

    required property SettingsWindowModel model
    readonly property var settings: model.settings

    color: Theme.window

    Binding {
        target: Theme
        property: "isLight"
        value: window.model.isLight
    }
    Binding {
        target: Theme
        property: "accentName"
        value: window.settings.accent
    }
    Binding {
        target: Theme
        property: "animated"
        value: window.settings.animationsEnabled
    }
    Binding {
        target: Theme
        property: "reducedMotion"
        value: window.model.reducedMotion
    }

    SettingsSidebar {
        id: sidebar
        width: Theme.sidebarWidth
        height: parent.height
        model: window.model.panes
        currentIndex: window.model.paneIndex
        onSelected: id => window.model.selectPane(id)
    }

    Rectangle {
        x: sidebar.width
        width: 1
        height: parent.height
        color: Theme.hairline
    }

    Flickable {
        id: page
        x: sidebar.width + 1
        width: parent.width - x
        height: parent.height
        contentHeight: column.height + 2 * column.y
        boundsBehavior: Flickable.StopAtBounds
        clip: true

        /// Scrolls as far as it takes to show the control that has the keyboard.
        function reveal(item: Item) {
            if (!item || !isInside(item))
                return;
            const top = item.mapToItem(contentItem, 0, 0).y;
            const margin = 2 * Theme.gap;
            if (top - margin < contentY)
                contentY = Math.max(0, top - margin);
            else if (top + item.height + margin > contentY + height)
                contentY = top + item.height + margin - height;
        }
        function isInside(item: Item): bool {
            for (let ancestor = item; ancestor; ancestor = ancestor.parent) {
                if (ancestor === contentItem)
                    return true;
            }
            return false;
        }

        Connections {
            target: window.Window.window
            function onActiveFocusItemChanged() {
                page.reveal(window.Window.window.activeFocusItem);
            }
        }

        Column {
            id: column
            x: Math.max(2 * Theme.gap, (parent.width - width) / 2)
            y: 2 * Theme.gap
            width: Math.min(Theme.paneWidth, parent.width - 4 * Theme.gap)
            spacing: 2 * Theme.gap

            CardSurface {
                width: parent.width
                height: issue.height + 2 * Theme.cardPadding
                visible: window.model.loadIssue.length > 0

                Symbol {
                    id: sign
                    x: Theme.cardPadding
                    height: parent.height
                    name: "exclamationmark.triangle.fill"
                    color: Theme.warning
                }
                Label {
                    id: issue
                    anchors.left: sign.right
                    anchors.leftMargin: Theme.gap
                    anchors.right: parent.right
                    anchors.rightMargin: Theme.cardPadding
                    y: Theme.cardPadding
                    text: window.model.loadIssue
                    wrapMode: Text.Wrap
                    Accessible.role: Accessible.AlertMessage
                    Accessible.name: text
                }
            }

            Loader {
                id: pane
                width: parent.width
                Component.onCompleted: setSource(window.model.paneSource, {
                    "window": window.model
                })
            }
        }
    }

    Connections {
        target: window.model
        function onPaneChanged() {
            page.contentY = 0;
            pane.setSource(window.model.paneSource, {
                "window": window.model
            });
        }
    }
}
