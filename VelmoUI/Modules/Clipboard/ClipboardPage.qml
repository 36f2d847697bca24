import QtQuick
import Velmo

/// What the user copied, in a row that scrolls sideways, beside the collections.
FocusScope {
    id: view

    property ClipboardPageModel page: null
    property bool watched: false
    /// Until then the tiles aren't made, so that they are made once.
    property bool wasWatched: false
    readonly property bool hasHistory: page !== null && (!page.isEmpty || page.canUndo)
    readonly property bool isAsked: page !== null && page.question.length > 0

    onWatchedChanged: tell()
    onPageChanged: tell()
    Component.onDestruction: if (page !== null)
        page.setWatched(false)

    function tell() {
        if (page === null)
            return;
        if (watched)
            search.text = "";
        page.setWatched(watched);
        wasWatched = wasWatched || watched;
    }

    function openMenu(tile: Item, at: point) {
        menu.open(tile.mapToItem(view, at));
    }

    Loader {
        anchors.centerIn: parent
        active: view.page !== null && !view.hasHistory
        sourceComponent: EmptyState {
            width: Math.min(view.width, Theme.paneWidth)
            symbol: "doc.on.clipboard"
            title: view.page?.isEnabled ? "Nada copiado ainda" : "O histórico do clipboard está desligado"
            detail: view.page?.isCapturing ? "Textos, links, cores, imagens e arquivos que você copiar aparecem aqui."
                  : view.page?.isEnabled ? "A captura está pausada." : "Ligado, ele guarda o que você copiar, só neste computador."

            ActionButton {
                visible: !view.page?.isCapturing
                name: view.page?.isEnabled ? "Retomar" : "Ligar"
                onTriggered: view.page.toggleCapture()
            }
            ActionButton {
                name: "Ajustes do clipboard"
                onTriggered: view.page.openSettings()
            }
        }
    }

    ClipCollectionList {
        id: rail
        visible: view.hasHistory
        width: Theme.railWidth
        height: parent.height
        page: view.page
        onFinished: grid.forceActiveFocus()
    }

    Item {
        id: header
        anchors.left: rail.right
        anchors.leftMargin: Theme.gap
        anchors.right: parent.right
        visible: view.hasHistory
        height: Theme.controlHeight
        z: 1

        TextEntry {
            id: search
            visible: !view.isAsked
            width: Theme.searchWidth
            name: "Buscar no clipboard"
            placeholder: "Buscar"
            onEdited: text => view.page.search(text)
            onAccepted: view.page.copy()
            Keys.onDownPressed: grid.forceActiveFocus()
            Keys.onEscapePressed: event => {
                event.accepted = text.length > 0;
                if (event.accepted) {
                    text = "";
                    view.page.search("");
                    grid.forceActiveFocus();
                }
            }
        }

        Flickable {
            id: kinds
            anchors.left: search.right
            anchors.leftMargin: Theme.gap
            anchors.right: tail.left
            anchors.rightMargin: Theme.gap
            height: parent.height
            visible: !view.isAsked
            contentWidth: picker.width
            clip: contentWidth > width
            interactive: clip
            boundsBehavior: Flickable.StopAtBounds

            Picker {
                id: picker
                name: "Tipo"
                options: view.page?.kinds ?? []
                symbols: view.page?.kindSymbols ?? []
                current: view.page?.kindIndex ?? 0
                onPicked: index => view.page.kindIndex = index
            }
            SidewaysWheel {
                flickable: kinds
            }
        }

        Row {
            id: tail
            anchors.right: parent.right
            anchors.rightMargin: Theme.iconInset
            visible: !view.isAsked

            Label {
                height: Theme.controlHeight
                rightPadding: 2 * Theme.grid
                text: view.page?.summary ?? ""
                color: view.page?.isCapturing ? Theme.secondaryText : Theme.warning
                font.pixelSize: Theme.smallSize
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
            ActionButton {
                visible: view.page?.canUndo ?? false
                name: "Desfazer"
                textColor: Theme.accent
                onTriggered: view.page.undoRemove()
            }
            IconButton {
                id: pause
                name: view.page?.isCapturing ? "Pausar captura" : view.page?.isEnabled ? "Retomar captura" : "Ligar histórico"
                symbol: view.page?.isCapturing ? "pause.fill" : "play.fill"
                onTriggered: view.page.toggleCapture()
            }
            IconButton {
                id: clear
                name: "Apagar histórico…"
                symbol: "trash"
                onTriggered: view.page.askToClear()
            }
        }
        Tip {
            anchors.right: parent.right
            y: parent.height + Theme.grid
            shown: pause.hovered || clear.hovered
            text: pause.hovered ? pause.name : clear.name
        }

        Loader {
            anchors.right: parent.right
            active: view.isAsked
            onActiveChanged: if (!active)
                grid.forceActiveFocus()
            sourceComponent: Row {
                spacing: 2 * Theme.grid
                Keys.onEscapePressed: view.page.answer(false)
                Component.onCompleted: keep.forceActiveFocus()

                Label {
                    height: Theme.controlHeight
                    rightPadding: Theme.grid
                    text: view.page.question
                    Accessible.role: Accessible.AlertMessage
                    Accessible.name: text
                }
                ActionButton {
                    name: view.page.confirmation
                    textColor: Theme.error
                    KeyNavigation.right: keep
                    onTriggered: view.page.answer(true)
                }
                ActionButton {
                    id: keep
                    name: "Manter"
                    KeyNavigation.left: this
                    onTriggered: view.page.answer(false)
                }
            }
        }
    }

    Label {
        anchors.centerIn: grid
        visible: view.hasHistory && !view.page.hasFound
        text: "Nada encontrado"
        color: Theme.secondaryText
    }

    CardGrid {
        id: grid
        anchors.left: header.left
        anchors.right: parent.right
        anchors.rightMargin: -Theme.gap
        anchors.top: header.bottom
        anchors.topMargin: 2 * Theme.grid
        anchors.bottom: parent.bottom
        visible: view.hasHistory
        rows: 1
        cellWidth: Theme.clipWidth
        interactive: false
        keyNavigationEnabled: false
        focus: true
        cacheBuffer: 0
        model: view.wasWatched ? view.page.items : null
        currentIndex: view.page?.currentIndex ?? -1
        Accessible.role: Accessible.List
        Accessible.name: "Clipboard"
        Keys.onPressed: event => {
            event.accepted = view.page.handleKey(event.key, event.modifiers);
            if (event.accepted)
                return;
            const isMenu = event.key === Qt.Key_Menu || (event.key === Qt.Key_F10 && event.modifiers === Qt.ShiftModifier);
            if (isMenu && currentItem) {
                view.openMenu(currentItem, Qt.point(currentItem.width / 2, currentItem.height / 4));
                event.accepted = true;
            } else if (view.hasHistory && event.text > " " && event.key !== Qt.Key_Delete && !(event.modifiers & (Qt.ControlModifier | Qt.AltModifier | Qt.MetaModifier))) {
                search.text += event.text;
                view.page.search(search.text);
                search.forceActiveFocus();
                event.accepted = true;
            }
        }

        delegate: ClipTile {
            width: grid.cellWidth - Theme.gap
            height: grid.cellHeight
            page: view.page
            onMenuRequested: at => view.openMenu(this, at)
        }
    }

    ContextMenu {
        id: menu
        model: view.page ? view.page.commands : null
        onChosen: id => view.page.run(id)
        onVisibleChanged: if (!visible && !view.page.collections.isCollecting)
            grid.forceActiveFocus()
    }

    Connections {
        target: view.page
        function onCollecting() {
            rail.enter();
        }
    }
}
