import QtQuick
import Velmo.Design
import Velmo.Notch

/// The open panel: the modules beside the notch, the page of the selected one below. The keyboard
/// starts in the page.
FocusScope {
    id: expanded

    required property NotchContent content

    // A page on which no control has the keyboard yet is entered by Tab or an arrow.
    function enter() {
        const first = page.nextItemInFocusChain(true);
        let outer = first.parent;
        while (outer && outer !== Window.activeFocusItem)
            outer = outer.parent;
        if (outer)
            first.forceActiveFocus(Qt.TabFocusReason);
    }

    focus: true
    Keys.onRightPressed: enter()
    Keys.onDownPressed: enter()
    Keys.onTabPressed: page.nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
    Keys.onBacktabPressed: page.nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)
    Keys.onPressed: event => {
        if (event.key === Qt.Key_Z && event.modifiers === Qt.ControlModifier && content.drop.canUndo) {
            content.drop.undo();
            event.accepted = true;
        }
    }

    // Who calls a page means to use it, wherever in the panel the keyboard was.
    Connections {
        target: expanded.content
        function onCalled() {
            if (page.item && !page.activeFocus && !issueList.active)
                page.forceActiveFocus();
        }
    }

    ModuleBar {
        id: bar
        x: (parent.width - width) / 2
        width: expanded.content.barWidth
        height: expanded.content.notchHeight
        content: expanded.content
        z: 1

        Behavior on width {
            NumberAnimation {
                duration: Theme.glide
                easing.type: Easing.OutCubic
            }
        }
    }

    Loader {
        id: page
        x: Theme.margin
        y: expanded.content.notchHeight + Theme.grid
        width: parent.width - 2 * x
        height: parent.height - y - Theme.margin
        focus: true
        onLoaded: {
            (item as Item).focus = true;
            expanded.content.pages.setLoaded(true);
        }
        Component.onCompleted: show()
        Component.onDestruction: expanded.content.pages.setLoaded(false)

        function show() {
            setSource(expanded.content.pages.source, {
                "page": expanded.content.pages.page
            });
        }

        Connections {
            target: expanded.content.pages
            function onPageChanged() {
                page.show();
            }
        }
    }

    Loader {
        anchors.fill: page
        active: expanded.content.pages.failure.length > 0
        onActiveChanged: if (!active)
            page.forceActiveFocus()
        sourceComponent: FailurePage {
            focus: true
            Component.onCompleted: forceActiveFocus()
            title: expanded.content.pages.failureTitle
            message: expanded.content.pages.failure
            onRetried: expanded.content.pages.retry()
        }
    }

    Label {
        anchors.horizontalCenter: page.horizontalCenter
        anchors.bottom: page.bottom
        visible: expanded.content.isLoading
        text: "Carregando…"
        color: Theme.secondaryText
    }

    Loader {
        id: issueList
        anchors.fill: page
        active: bar.showsIssues && expanded.content.issues.length > 0
        onActiveChanged: if (!active)
            page.forceActiveFocus()
        sourceComponent: IssueList {
            issues: expanded.content.issues
            focus: true
            Component.onCompleted: forceActiveFocus()
            onClosed: bar.showsIssues = false
            onDismissed: {
                bar.showsIssues = false;
                expanded.content.dismissIssues();
            }
        }
    }

    // A drop that closed the panel has moved files: what it did can be taken back here.
    Loader {
        anchors.right: page.right
        anchors.bottom: page.bottom
        anchors.margins: Theme.grid
        active: expanded.content.drop.canUndo
        onActiveChanged: if (!active && activeFocus)
            page.forceActiveFocus()
        sourceComponent: UndoNotice {
            title: expanded.content.drop.undoTitle
            onUndone: expanded.content.drop.undo()
        }
    }
}
