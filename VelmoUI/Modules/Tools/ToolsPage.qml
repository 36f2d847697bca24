import QtQuick
import Velmo

/// The files chosen on the left; on the right what can be done with them, or the tool that is open.
FocusScope {
    id: view

    property ToolsPageModel page: null
    property bool watched: false
    property int lastTile: 0
    readonly property bool hasFiles: page !== null && page.hasFiles
    /// A password is asked for, maybe that of an archive which isn't chosen any more.
    readonly property bool asks: page !== null && page.passwordQuestion.length > 0

    onWatchedChanged: tell()
    onPageChanged: tell()
    Component.onDestruction: if (page !== null)
        page.setWatched(false)

    function tell() {
        if (page !== null)
            page.setWatched(watched);
    }

    EmptyState {
        anchors.centerIn: parent
        visible: view.page !== null && !view.hasFiles && !view.asks
        isOfKept: false
        symbol: "wrench.and.screwdriver"
        title: "Nenhum arquivo escolhido"
        detail: "Arraste arquivos até o notch ou escolha-os aqui para renomear, mover, compactar ou extrair."

        ActionButton {
            name: "Escolher arquivos"
            onTriggered: view.page.chooseFiles()
        }
    }

    SelectionCard {
        id: selection
        visible: view.hasFiles
        width: Theme.sidebarWidth + Theme.rowHeight + 2 * Theme.cardPadding
        height: parent.height
        page: view.page
    }

    Loader {
        id: tool

        readonly property string id: view.page === null ? "" : view.asks ? "password" : view.page.tool
        property string idBefore: ""

        x: selection.visible ? selection.width + Theme.gap : 0
        width: parent.width - x
        height: parent.height
        visible: view.hasFiles || view.asks
        focus: visible
        active: view.page !== null
        sourceComponent: id === "password" ? password : id === "rename" ? rename : id === "zip" ? zip : id === "extract" ? extract
                       : id === "list" ? contents : id === "summary" ? summary : all
        // The keyboard goes into a tool that opens, and back to the tiles.
        onLoaded: {
            if (id !== idBefore)
                forceActiveFocus();
            idBefore = id;
        }
    }

    Component {
        id: all
        ToolTiles {
            page: view.page
            Component.onCompleted: current = view.lastTile
            Component.onDestruction: view.lastTile = current
        }
    }
    Component {
        id: password
        PasswordTool {
            page: view.page
        }
    }
    Component {
        id: rename
        RenameTool {
            page: view.page
        }
    }
    Component {
        id: zip
        ZipTool {
            page: view.page
        }
    }
    Component {
        id: extract
        ExtractTool {
            page: view.page
        }
    }
    Component {
        id: contents
        ArchiveContentsTool {
            page: view.page
        }
    }
    Component {
        id: summary
        SummaryTool {
            page: view.page
        }
    }
}
