import QtQuick
import Velmo.Design
import Velmo.Modules.Tools

/// The files chosen on the left; on the right what can be done with them, or the tool that is open.
FocusScope {
    id: view

    required property ToolsPageModel page
    property int lastTile: 0
    readonly property bool hasFiles: page.hasFiles
    /// A password is asked for, maybe that of an archive which isn't chosen any more.
    readonly property bool asks: page.passwordQuestion.length > 0

    EmptyState {
        anchors.centerIn: parent
        visible: !view.hasFiles && !view.asks
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

        readonly property string id: view.asks ? "password" : view.page.tool
        property string idBefore: ""

        x: selection.visible ? selection.width + Theme.gap : 0
        width: parent.width - x
        height: parent.height
        visible: view.hasFiles || view.asks
        focus: visible
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
