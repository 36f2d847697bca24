import QtQuick
import Velmo.Design
import Velmo.Modules.Tools

/// An open tool: its name and a way back, its fields in the same row, the rest below.
FocusScope {
    id: form

    required property ToolsPageModel page
    property alias fields: fields.data
    default property alias content: body.data

    focus: true
    Keys.onEscapePressed: page.closeTool()

    IconButton {
        id: back
        name: "Voltar às ferramentas"
        symbol: "arrow.left"
        onTriggered: form.page.closeTool()
    }
    Label {
        id: title
        anchors.left: back.right
        anchors.leftMargin: Theme.grid
        height: Theme.controlHeight
        text: form.page.toolTitle
        font.weight: Font.Medium
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    Item {
        id: fields
        anchors.left: title.right
        anchors.leftMargin: 2 * Theme.gap
        anchors.right: parent.right
        height: Theme.controlHeight
    }
    FocusScope {
        id: body
        y: Theme.controlHeight + Theme.gap
        width: parent.width
        height: parent.height - y
    }
}
