import QtQuick
import Velmo.Design
import Velmo.Modules.Clipboard
import Velmo.Modules.Frame

/// What the user copied, in a row that scrolls sideways, beside the collections.
FocusScope {
    id: view

    required property ClipboardPageModel page
    readonly property bool isAsked: page.question.length > 0

    Loader {
        anchors.centerIn: parent
        active: !view.page.hasTiles
        sourceComponent: EmptyState {
            width: Math.min(view.width, Theme.paneWidth)
            symbol: "doc.on.clipboard"
            title: view.page.isEnabled ? "Nada copiado ainda" : "O histórico do clipboard está desligado"
            detail: view.page.isCapturing ? "Textos, links, cores, imagens e arquivos que você copiar aparecem aqui."
                  : view.page.isEnabled ? "A captura está pausada." : "Ligado, ele guarda o que você copiar, só neste computador."

            ActionButton {
                visible: !view.page.isCapturing
                name: view.page.isEnabled ? "Retomar" : "Ligar"
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
        visible: view.page.hasTiles
        width: Theme.railWidth
        height: parent.height
        page: view.page
        onFinished: tiles.forceActiveFocus()
    }

    Item {
        id: header
        anchors.left: rail.right
        anchors.leftMargin: Theme.gap
        anchors.right: parent.right
        visible: view.page.hasTiles
        height: Theme.controlHeight
        z: 1

        SearchField {
            id: search
            visible: !view.isAsked
            width: Theme.searchWidth
            name: "Buscar no clipboard"
            results: tiles
            onEdited: text => view.page.search(text)
            onAccepted: view.page.copy()
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
                options: view.page.kinds
                symbols: view.page.kindSymbols
                current: view.page.kindIndex
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

            TileSummary {
                page: view.page
                color: view.page.isCapturing ? Theme.secondaryText : Theme.warning
            }
            IconButton {
                id: pause
                name: view.page.isCapturing ? "Pausar captura" : view.page.isEnabled ? "Retomar captura" : "Ligar histórico"
                symbol: view.page.isCapturing ? "pause.fill" : "play.fill"
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
                tiles.forceActiveFocus()
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

    TileGrid {
        id: tiles
        anchors.left: header.left
        anchors.right: parent.right
        anchors.rightMargin: -Theme.gap
        anchors.top: header.bottom
        anchors.topMargin: 2 * Theme.grid
        anchors.bottom: parent.bottom
        cellWidth: Theme.clipWidth
        name: "Clipboard"
        page: view.page
        search: search

        delegate: ClipTile {
            grid: tiles
            page: view.page
        }
    }

    Connections {
        target: view.page
        function onCollecting() {
            rail.enter();
        }
        function onWatchedChanged() {
            if (view.page.isWatched)
                search.text = "";
        }
    }
}
